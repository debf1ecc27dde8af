#pragma once

#include "foundation/core/GResult.h"
#include "hosts/scribus/books/BookFile.h"
#include "hosts/scribus/documents/ScribusDocument.h"
#include "hosts/scribus/pdf/PdfSettings.h"
#include "hosts/scribus/runner/ScribusRunner.h"
#include "plugin/host/IHostServices.h"

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class IHostFrontend;

// The layout application that a plug-in sees: documents and books that are open, and the commands that
// Scribus carries out. What it offers a plug-in is IHostServices; the rest is for the window or the
// command line around it, and for the objects that it hands out.
//
// For the main thread. While a command runs, the frontend may handle events, but must open and close nothing.
class ScribusHost final : public IHostServices
{
public:
    using DocumentPtr = std::shared_ptr<ScribusDocument>;
    using BookPtr = std::shared_ptr<BookFile>;

    explicit ScribusHost(const ScribusSetup& setup = ScribusSetup());
    ~ScribusHost();
    ScribusHost(const ScribusHost&) = delete;
    ScribusHost& operator=(const ScribusHost&) = delete;

    // Who shows progress and alerts; null for nobody. Nothing is owned.
    void SetFrontend(IHostFrontend* frontend);

    // Opens a document, asks Scribus about it, and makes it the active one; one that is open already is only
    // made active. Fails when there is no such file or Scribus can't read it; nothing has changed then.
    GResult OpenDocument(const QString& path);

    // Opens an untitled document with the content of another file, and makes it the active one.
    GResult NewDocument(const QString& templatePath);

    // Closes a document as it stands, without a question.
    void CloseDocument(const DocumentPtr& document);

    // The user's documents in the order in which they were opened. Those that a command opens are not here.
    const std::vector<DocumentPtr>& GetDocuments() const { return mDocuments; }

    // The document in front; null when none is open.
    DocumentPtr GetActiveDocument() const { return mActiveDocument; }
    void SetActiveDocument(const DocumentPtr& document) { mActiveDocument = document; }

    // The same for books. OpenBook does not look at the book's documents.
    GResult OpenBook(const QString& path);
    BookPtr NewBook(const QString& path);
    void CloseBook(const BookPtr& book);
    const std::vector<BookPtr>& GetBooks() const { return mBooks; }
    BookPtr GetActiveBook() const { return mActiveBook; }
    void SetActiveBook(const BookPtr& book) { mActiveBook = book; }

    // Where plug-ins register their actions and menu entries; without one, the host has no menus. Nothing is
    // owned.
    void SetActionManager(IActionManager* manager) { mActionManager = manager; }
    IActionManager* GetActionManager() const { return mActionManager; }

    // The unit in which lengths are shown (HostUnitID); points until set.
    ClassID GetUnit() const { return mUnit; }
    void SetUnit(ClassID unit) { mUnit = unit; }

    // Whether a plug-in's window is modal: menus and panels are to rest then.
    bool IsModal() const { return !mModalTokens.empty(); }
    ModalToken AcquireModalToken();
    void HandBackModalToken(ModalToken token);

    // Why the last command failed, as it stands in the log; empty after one that succeeded.
    const QString& GetLastFailure() const { return mLastFailure; }

    // For a failure outside a command, such as a document that can't be opened.
    void SetLastFailure(const QString& reason) { mLastFailure = reason; }

    // Why the range of pages that was tried last names none; empty after one that names pages. Ranges are
    // tried while they are typed, so this is no failure of a command.
    const QString& GetRangeFailure() const { return mRangeFailure; }
    void SetRangeFailure(const QString& reason) { mRangeFailure = reason; }

    // What the last export that succeeded made of the job options, as docs/layout-host.md shows it:
    // "settings", "images", "fonts" and "notes". Empty before one.
    const QJsonObject& GetLastReport() const { return mLastReport; }

    // How many PDFs were exported.
    int GetExportCount() const { return mExportCount; }

    // What the last commands that succeeded have made: a PDF, and the folder of a package. Empty where none
    // has.
    const QString& GetLastPDF() const { return mLastPDF; }
    const QString& GetLastPackage() const { return mLastPackage; }

    // For the host's objects.

    ScribusRunner& GetRunner() { return mRunner; }

    // A document by its file, wherever the host has it: one that is open, one that was lately, or a new one.
    DocumentPtr TakeDocument(const QString& path);

    // Asks Scribus about all documents of the active book, as a command with progress and Cancel, in one
    // start where that is possible. No code, and nothing is asked, when the file is none of them. Fails only
    // when the user has cancelled: what went wrong with a document is there.
    std::optional<ErrorCode> AskAboutBook(const QString& path);

    // The documents that a plug-in has opened and not closed.
    std::vector<DocumentPtr>& GetHiddenDocuments() { return mHiddenDocuments; }

    // An open document by its file, or by the database of its pages; null for none.
    DocumentPtr FindDocument(const QString& path) const;
    DocumentPtr FindDocument(const IDataBase* database) const;

    // Saves a document to its own file; the frontend is asked for the file of an untitled one.
    GResult SaveDocument(ScribusDocument& document);

    // The settings of the last PDF preferences command.
    const PdfSettings& GetPdfSettings() const { return mPdfSettings; }
    void SetPdfSettings(const PdfSettings& settings) { mPdfSettings = settings; }

    // Logs why something of the plug-in's failed, and tells the plug-in when the user has cancelled it.
    void TellOfFailure(const QString& what, const GResult& result);

    // A PDF that was made. Its report is written beside it, under its name with ".report.json".
    void SetLastPDF(const QString& path, const QJsonObject& report);
    void SetLastPackage(const QString& folder) { mLastPackage = folder; }

    // Carries out a command with progress and a log line for its failure, and tells the plug-in when the user
    // has cancelled. `step` begins a step.
    using BeginStep = std::function<void(const QString& text)>;
    using Work = std::function<GResult(const BeginStep& step)>;
    ErrorCode RunCommand(const QString& title, int steps, const Work& work);

    int32_t GetVersion() const override { return cVersion; }
    HostPtr<ISession> QuerySession() override;
    HostPtr<IUnitOfMeasureSettings> QueryUnitPreferences(IActiveContext* context) override;
    HostPtr<ILayoutUtils> QueryLayoutUtils() override;
    HostPtr<IDocumentUtils> QueryDocumentUtils() override;
    HostPtr<IModalUtils> QueryModalUtils() override;
    HostPtr<ICommand> CreateCommand(ClassID command) override;
    ErrorCode ProcessCommand(ICommand& command) override;
    void SetCancelObserver(ICancelObserver* observer) override { mCancelObserver = observer; }
    HostPtr<IObjectModel> QueryObjectModel() override;
    int32_t ModalAlert(const PMString& text, const PMString& button1, const PMString& button2,
                       const PMString& button3, int32_t defaultButton, int32_t cancelButton) override;

private:
    GResult Show(const DocumentPtr& document);
    void KeepForLater(const DocumentPtr& document);

    ScribusRunner mRunner;
    IHostFrontend* mFrontend = nullptr;
    ICancelObserver* mCancelObserver = nullptr;
    IActionManager* mActionManager = nullptr;
    std::vector<DocumentPtr> mDocuments;
    std::vector<DocumentPtr> mHiddenDocuments;
    std::vector<DocumentPtr> mRecentDocuments;  // closed, with what Scribus said of them
    DocumentPtr mActiveDocument;
    std::vector<BookPtr> mBooks;
    BookPtr mActiveBook;
    ClassID mUnit = HostUnitID::cPoints;
    std::vector<ModalToken> mModalTokens;
    ModalToken mLastModalToken = cNoModalToken;
    int mUntitledCount = 0;
    PdfSettings mPdfSettings;
    QString mLastFailure;
    QString mRangeFailure;
    int mExportCount = 0;
    QString mLastPDF;
    QJsonObject mLastReport;
    QString mLastPackage;
};
