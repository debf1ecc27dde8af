// The script's end of the talk with the helper: it says a line and reads one. It never waits for a line that
// it has not asked for, so the application goes on between two idle tasks.
namespace Hopbox {
  const version = 1
  const patience = 60 // seconds for a line
  const longestRun = 250 // milliseconds of an idle task

  const folderName = "/Morvane Prefs Folder/Hopbox Bridge/"

  let socket: Socket | null = null
  let refusal = ""

  export function isConnected(): boolean {
    return socket !== null
  }

  // Why the helper does not serve this application; empty while it may.
  export function getRefusal(): string {
    return refusal
  }

  export function disconnect(): void {
    if (socket !== null) socket.close()
    socket = null
    forgetObjects()
  }

  // Says a line and gives the one that comes back; null when the helper is gone.
  function exchange(line: JsonObject): JsonObject | null {
    if (socket === null) return null
    try {
      const reply = socket.write(writeJson(line) + "\n") ? readJson(socket.readln()) : null
      if (reply !== null && typeof reply === "object" && !(reply instanceof Array)) return reply
    } catch (error) {
      // no JSON: the helper ended in the middle of it, or before
    }
    disconnect()
    return null
  }

  function findOperation(name: Json): ((request: Request) => Json) | null {
    if (typeof name !== "string") return null
    return documentOperations[name] || bookOperations[name] || outputOperations[name] || null
  }

  function answer(line: JsonObject): JsonObject {
    const operation = findOperation(line["do"])
    const made: JsonObject = { answer: line["request"], result: UNSUPPORTED }
    if (operation === null) return made
    try {
      made["value"] = operation(new Request(line))
      made["result"] = OK
    } catch (error) {
      made["result"] = resultOf(error)
      if (error instanceof Error) made["error"] = error.description
    }
    return made
  }

  // Says a line and does what the helper asks for until it answers the line itself, or the time is over: a
  // request that is left then is answered first the next time.
  let left: JsonObject | null = null

  function converse(line: JsonObject, milliseconds: number): JsonObject | null {
    const start = new Date().getTime()
    let reply = exchange(line)
    while (reply !== null && reply["request"] !== undefined) {
      if (milliseconds > 0 && new Date().getTime() - start > milliseconds) {
        left = reply
        return {}
      }
      reply = exchange(answer(reply))
    }
    return reply
  }

  // Serves the helper for a short while. False when its action is over, or the helper is gone.
  export function serve(): boolean {
    const first = left === null ? { poll: true } : answer(left)
    left = null
    const reply = converse(first, longestRun)
    if (reply === null) return false
    if (reply["finished"] !== true) return true
    forgetObjects()
    return false
  }

  export interface State {
    enabled: boolean
    name: string
  }

  // What an entry is to show; null when the helper can't tell now.
  export function askState(action: number): State | null {
    const reply = left === null ? converse({ state: action }, 0) : null
    const state = reply === null ? null : reply["state"]
    if (state === null || typeof state !== "object" || state instanceof Array) return null
    return { enabled: state["enabled"] === true, name: String(state["name"]) }
  }

  // Has the helper run an action. False when it is gone.
  export function choose(action: number): boolean {
    const reply = exchange({ choose: action })
    return reply !== null && reply["started"] === true
  }

  function readPlace(): JsonObject | null {
    const file = new File(Folder.userData.fsName + folderName + "bridge.json")
    if (!file.exists || !file.open("r")) return null
    try {
      const place = readJson(file.read())
      return place !== null && typeof place === "object" && !(place instanceof Array) ? place : null
    } catch (error) {
      return null
    } finally {
      file.close()
    }
  }

  // Looks for a helper once. Gives the entries' names by action, or null when there is none yet.
  export function connect(): JsonObject | null {
    const place = readPlace()
    if (place === null) return null
    const made = new Socket()
    made.timeout = patience
    if (!made.open("127.0.0.1:" + String(place["port"]), "UTF-8")) return null
    socket = made
    left = null
    const welcome = exchange({ hello: version, secret: place["secret"] })
    refusal = welcome !== null && typeof welcome["refused"] === "string" ? welcome["refused"] : ""
    if (welcome === null || welcome["welcome"] !== version) {
      disconnect()
      return null
    }
    const names = welcome["actions"]
    return names !== null && typeof names === "object" && !(names instanceof Array) ? names : {}
  }

  // The helper lies in a folder beside this script.
  export function startHelper(): boolean {
    const name = "hopbox-bridge" + (File.fs === "Windows" ? ".exe" : "")
    const program = new File(File($.fileName).parent.fsName + "/Hopbox/" + name)
    return program.exists && program.execute()
  }
}
