// The script engine has no reader of JSON, and its own evaluation would run what it reads.
namespace Hopbox {
  export type Json = string | number | boolean | null | Json[] | JsonObject
  export interface JsonObject {
    [name: string]: Json
  }

  // Texts are written in ASCII: the connection then needs no encoding.
  function writeText(text: string): string {
    let written = '"'
    for (let i = 0; i < text.length; i++) {
      const code = text.charCodeAt(i)
      const character = text.charAt(i)
      if (character === '"' || character === "\\") written += "\\" + character
      else if (code >= 0x20 && code < 0x7f) written += character
      else written += "\\u" + ("000" + code.toString(16)).slice(-4)
    }
    return written + '"'
  }

  export function writeJson(value: Json): string {
    if (typeof value === "string") return writeText(value)
    if (value === null || typeof value !== "object") return String(value)
    const parts: string[] = []
    if (value instanceof Array) {
      for (let i = 0; i < value.length; i++) parts.push(writeJson(value[i]))
      return "[" + parts.join(",") + "]"
    }
    for (const name in value) parts.push(writeText(name) + ":" + writeJson(value[name]))
    return "{" + parts.join(",") + "}"
  }

  // Reads one value. Raises an error for any text that is no JSON.
  export function readJson(text: string): Json {
    const reader = new Reader(text)
    const value = reader.readValue()
    reader.expectEnd()
    return value
  }

  class Reader {
    private at = 0

    constructor(private text: string) {}

    readValue(): Json {
      const character = this.skip()
      if (character === "{") return this.readObject()
      if (character === "[") return this.readArray()
      if (character === '"') return this.readText()
      return this.readWord()
    }

    expectEnd(): void {
      if (this.skip() !== "") this.fail()
    }

    private fail(): never {
      throw new Error("no JSON at " + this.at)
    }

    // The next character that is no space; empty at the end.
    private skip(): string {
      while (this.at < this.text.length && " \t\r\n".indexOf(this.text.charAt(this.at)) >= 0) this.at++
      return this.text.charAt(this.at)
    }

    private expect(character: string): void {
      if (this.skip() !== character) this.fail()
      this.at++
    }

    private readObject(): JsonObject {
      const made: JsonObject = {}
      this.at++
      while (this.skip() !== "}") {
        const name = this.readText()
        this.expect(":")
        made[name] = this.readValue()
        if (this.skip() !== "}") this.expect(",")
      }
      this.at++
      return made
    }

    private readArray(): Json[] {
      const made: Json[] = []
      this.at++
      while (this.skip() !== "]") {
        made.push(this.readValue())
        if (this.skip() !== "]") this.expect(",")
      }
      this.at++
      return made
    }

    private readText(): string {
      this.expect('"')
      let made = ""
      while (this.text.charAt(this.at) !== '"') {
        if (this.at >= this.text.length) this.fail()
        made += this.text.charAt(this.at) === "\\" ? this.readEscape() : this.text.charAt(this.at)
        this.at++
      }
      this.at++
      return made
    }

    private readEscape(): string {
      const character = this.text.charAt(++this.at)
      const found = "bfnrt".indexOf(character)
      if (found >= 0 && character !== "") return "\b\f\n\r\t".charAt(found)
      if (character !== "u") return character
      const digits = this.text.substr(this.at + 1, 4)
      if (!/^[0-9a-fA-F]{4}$/.test(digits)) this.fail()
      this.at += 4
      return String.fromCharCode(parseInt(digits, 16))
    }

    private readWord(): Json {
      const start = this.at
      while (this.at < this.text.length && ",]} \t".indexOf(this.text.charAt(this.at)) < 0) this.at++
      const word = this.text.substring(start, this.at)
      if (word === "true" || word === "false") return word === "true"
      if (word === "null") return null
      if (!/^-?[0-9]+(\.[0-9]+)?([eE][-+]?[0-9]+)?$/.test(word)) this.fail()
      return Number(word)
    }
  }
}
