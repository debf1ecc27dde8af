namespace Hopbox {
  // The types ask for a file, which is for a document that has none.
  interface Saved {
    save(): Document
  }

  function sameFile(one: File, path: string): boolean {
    const isCaseless = File.fs === "Windows"
    return isCaseless ? one.fsName.toLowerCase() === path.toLowerCase() : one.fsName === path
  }

  function findOpen(path: string): Document | null {
    for (let i = 0; i < app.documents.length; i++) {
      const document = app.documents.item(i)
      if (document.saved && sameFile(document.fullName, path)) return document
    }
    return null
  }

  // The place of the page that a text names: the page that bears it, else the one at that place.
  function findPage(document: Document, text: string): number {
    for (let i = 0; i < document.pages.length; i++) if (document.pages.item(i).name === text) return i
    const place = /^[0-9]+$/.test(text) ? parseInt(text, 10) : 0
    if (place < 1 || place > document.pages.length) throw new Stop(FAILED)
    return place - 1
  }

  function trim(text: string): string {
    return text.replace(/^\s+|\s+$/g, "")
  }

  // A part is a page, or the first and the last of some; a page's own name may have a hyphen.
  function addPart(document: Document, part: string, pages: Json[]): void {
    const ends = part.split("-")
    let first = 0
    let last = 0
    if (ends.length === 2) {
      first = findPage(document, trim(ends[0]))
      last = findPage(document, trim(ends[1]))
      if (last < first) throw new Stop(FAILED)
    } else {
      first = last = findPage(document, part)
    }
    for (let i = first; i <= last; i++) pages.push(document.pages.item(i).id)
  }

  function pagesOfRange(document: Document, range: string): Json[] {
    const pages: Json[] = []
    const parts = range.split(",")
    for (let i = 0; i < parts.length; i++) addPart(document, trim(parts[i]), pages)
    return pages
  }

  function missingFonts(document: Document): Json[] {
    const names: Json[] = []
    for (let i = 0; i < document.fonts.length; i++) {
      const font = document.fonts.item(i)
      if (font.status === FontStatus.NOT_AVAILABLE || font.status === FontStatus.SUBSTITUTED) names.push(font.name)
    }
    return names
  }

  function save(document: Document): void {
    if (document.saved) {
      ;(document as unknown as Saved).save()
      return
    }
    const chosen = File.saveDialog(document.name)
    if (chosen === null) throw new Stop(CANCELLED)
    document.save(chosen)
  }

  // The helper's numbers of units.
  function unitOf(units: MeasurementUnits): number {
    switch (units) {
      case MeasurementUnits.PICAS: return 1
      case MeasurementUnits.INCHES: return 2
      case MeasurementUnits.INCHES_DECIMAL: return 2
      case MeasurementUnits.CENTIMETERS: return 3
      case MeasurementUnits.MILLIMETERS: return 4
      default: return 0
    }
  }

  // Documents that were opened without a window are none that the user sees.
  export function hasFrontDocument(): boolean {
    for (let i = 0; i < app.documents.length; i++) if (app.documents.item(i).visible) return true
    return false
  }

  function frontDocument(): Document {
    if (!hasFrontDocument()) throw new Stop(NONE)
    return app.activeDocument
  }

  export const documentOperations: Operations = {
    get_unit: function () {
      const preferences = hasFrontDocument() ? app.activeDocument.viewPreferences : app.viewPreferences
      return unitOf(preferences.horizontalMeasurementUnits)
    },
    get_front_document: function () {
      return giveDocument(frontDocument())
    },
    find_open_document: function (request) {
      const document = findOpen(request.text("path"))
      if (document === null) throw new Stop(NONE)
      return giveDocument(document)
    },
    open_document: function (request) {
      const document: unknown = quietly(function () {
        return app.open(request.file("path"), false)
      })
      if (!(document instanceof Document)) throw new Stop(FAILED)
      return giveDocument(document)
    },
    close_document: function (request) {
      const document = request.document()
      quietly(function () {
        document.close(SaveOptions.NO)
      })
      return null
    },
    is_document_saved: function (request) {
      const document = request.document()
      return document.saved && !document.modified
    },
    save_document: function (request) {
      save(request.document())
      return null
    },
    get_document_file: function (request) {
      const document = request.document()
      if (!document.saved) throw new Stop(NONE)
      return document.fullName.fsName
    },
    get_document_name: function (request) {
      return request.document().name
    },
    get_pages: function (request) {
      const pages = request.document().pages
      const numbers: Json[] = []
      for (let i = 0; i < pages.length; i++) numbers.push(pages.item(i).id)
      return numbers
    },
    get_pages_of_range: function (request) {
      return pagesOfRange(request.document(), request.text("range"))
    },
    get_missing_fonts: function (request) {
      return missingFonts(request.document())
    },
  }
}
