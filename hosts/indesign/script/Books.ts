namespace Hopbox {
  interface Saved {
    save(): void
  }

  function contents(request: Request): BookContents {
    return request.book().bookContents
  }

  export const bookOperations: Operations = {
    get_active_book: function () {
      if (app.books.length === 0) throw new Stop(NONE)
      return giveBook(app.activeBook)
    },
    get_book_file: function (request) {
      const book = request.book()
      if (!book.saved) throw new Stop(NONE)
      return book.fullName.fsName
    },
    get_book_name: function (request) {
      return request.book().name
    },
    is_book_modified: function (request) {
      return request.book().modified
    },
    save_book: function (request) {
      const book = request.book()
      ;(book as unknown as Saved).save()
      return null
    },
    get_book_document_count: function (request) {
      return contents(request).length
    },
    get_book_document_file: function (request) {
      const index = request.number("index")
      if (index < 0 || index >= contents(request).length) throw new Stop(FAILED)
      return contents(request).item(index).fullName.fsName
    },
  }
}
