// What operations are given and what they answer.
namespace Hopbox {
  export const OK = 0
  export const NONE = 1
  export const FAILED = 2
  export const CANCELLED = 3
  export const UNSUPPORTED = 5

  // Ends an operation with a result that is no fault of the application's.
  export class Stop {
    constructor(public result: number) {}
  }

  // What the error of an operation means for its answer. The application tells a cancel by this number.
  export function resultOf(error: unknown): number {
    const userCancelled = -128
    if (error instanceof Stop) return error.result
    const numbered = error as { number?: number } | null
    return numbered !== null && numbered.number === userCancelled ? CANCELLED : FAILED
  }

  // The objects that the helper knows by number, until its action is over.
  let known: Array<Document | Book> = []

  export function forgetObjects(): void {
    known = []
  }

  function give(object: Document | Book): number {
    known.push(object)
    return known.length
  }

  export function giveDocument(document: Document): number {
    return give(document)
  }

  export function giveBook(book: Book): number {
    return give(book)
  }

  // A request's arguments. What is missing or of another type ends the operation.
  export class Request {
    constructor(private line: JsonObject) {}

    text(name: string): string {
      const value = this.line[name]
      if (typeof value !== "string") throw new Stop(UNSUPPORTED)
      return value
    }

    number(name: string): number {
      const value = this.line[name]
      if (typeof value !== "number") throw new Stop(UNSUPPORTED)
      return value
    }

    list(name: string): Json[] {
      const value = this.line[name]
      if (!(value instanceof Array)) throw new Stop(UNSUPPORTED)
      return value
    }

    file(name: string): File {
      return File(this.text(name))
    }

    document(): Document {
      const object = known[this.number("document") - 1]
      if (!(object instanceof Document) || !object.isValid) throw new Stop(FAILED)
      return object
    }

    book(): Book {
      const object = known[this.number("book") - 1]
      if (!(object instanceof Book) || !object.isValid) throw new Stop(FAILED)
      return object
    }
  }

  // Does something without the application's dialogs and alerts: whoever waits for the answer could not see
  // them behind the helper's window.
  export function quietly<Result>(work: () => Result): Result {
    const preferences = app.scriptPreferences
    const level = preferences.userInteractionLevel
    preferences.userInteractionLevel = UserInteractionLevels.NEVER_INTERACT
    try {
      return work()
    } finally {
      preferences.userInteractionLevel = level
    }
  }

  // An operation gives what belongs to its answer, or raises.
  export interface Operations {
    [name: string]: (request: Request) => Json
  }
}
