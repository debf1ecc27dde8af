// What makes files: PDFs, packages, the report of a package.
namespace Hopbox {
  // Pages as the application reads them: "+3" is the third of the document, whatever number it bears.
  function rangeOf(document: Document, pages: Json[]): PageRange | string {
    const places: string[] = []
    let isAll = pages.length === document.pages.length
    for (let i = 0; i < pages.length; i++) {
      const page = document.pages.itemByID(Number(pages[i]))
      if (!page.isValid) throw new Stop(FAILED)
      isAll = isAll && page.documentOffset === i
      places.push("+" + (page.documentOffset + 1))
    }
    return isAll ? PageRange.ALL_PAGES : places.join(",")
  }

  // The application keeps these for its next export, which is the user's own.
  function withPreferences(range: PageRange | string, work: () => void): void {
    const preferences = app.pdfExportPreferences
    const before = { range: preferences.pageRange, view: preferences.viewPDF }
    try {
      preferences.pageRange = range
      preferences.viewPDF = false
      quietly(work)
    } finally {
      preferences.pageRange = before.range
      preferences.viewPDF = before.view
    }
  }

  function exportDocument(request: Request): Json {
    const document = request.document()
    withPreset(request.list("preset"), function (preset) {
      withPreferences(rangeOf(document, request.list("pages")), function () {
        document.exportFile(ExportFormat.PDF_TYPE, request.file("output"), false, preset)
      })
    })
    return null
  }

  function exportBook(request: Request): Json {
    const book = request.book()
    withPreset(request.list("preset"), function (preset) {
      withPreferences(PageRange.ALL_PAGES, function () {
        book.exportFile(ExportFormat.PDF_TYPE, request.file("output"), false, preset)
      })
    })
    return null
  }

  // The eight settings are in the order of the call, but for the three between the seventh and the eighth:
  // neither IDML nor PDF goes into a package.
  function packageTo(source: Document | Book, request: Request): Json {
    const on = request.list("settings")
    const setting = function (index: number): boolean {
      if (typeof on[index] !== "boolean") throw new Stop(UNSUPPORTED)
      return on[index] === true
    }
    const isDone = quietly(function () {
      return source.packageForPrint(
        request.file("output"), setting(0), setting(1), setting(2), setting(3), setting(4), setting(5), setting(6),
        false, false, "", setting(7), "",
      )
    })
    if (!isDone) throw new Stop(FAILED)
    return null
  }

  function writeReport(request: Request): Json {
    const document = request.document()
    const lines = [document.name, "", "Fonts:"]
    for (let i = 0; i < document.fonts.length; i++) {
      const font = document.fonts.item(i)
      lines.push(font.name.replace("\t", " ") + (font.status === FontStatus.INSTALLED ? "" : " (not installed)"))
    }
    lines.push("", "Links:")
    for (let i = 0; i < document.links.length; i++) {
      const link = document.links.item(i)
      lines.push(link.name + (link.status === LinkStatus.LINK_MISSING ? " (missing)" : ""))
    }
    const file = new File(request.text("output") + "/Package Report.txt")
    file.encoding = "UTF-8"
    if (!file.open("w") || !file.write(lines.join("\n") + "\n") || !file.close()) throw new Stop(FAILED)
    return null
  }

  export const outputOperations: Operations = {
    export_document: exportDocument,
    export_book: exportBook,
    package_document: function (request) {
      return packageTo(request.document(), request)
    },
    package_book: function (request) {
      return packageTo(request.book(), request)
    },
    write_report: writeReport,
  }
}
