#include "hosts/scribus/host/ScribusHost.h"

#include "foundation/system/GDurableFile.h"
#include "foundation/trace/GTrace.h"
#include "hosts/scribus/host/HostCommand.h"
#include "hosts/scribus/host/HostDocuments.h"
#include "hosts/scribus/host/HostPackages.h"
#include "hosts/scribus/host/HostSession.h"
#include "hosts/scribus/runner/IHostFrontend.h"

#include <QDir>
#include <QFileInfo>
#include <QJsonDocument>

#include <algorithm>

// A book is gone over twice, each time by opening its documents; what Scribus said of them serves both times.
constexpr size_t cRecentKept = 64;

static QString MakeAbsolute(const QString& path)
{
    return QDir::cleanPath(QDir().absoluteFilePath(path));
}

// Takes an item out of a list, and gives the one to be active then.
template <class Item>
static Item TakeOut(std::vector<Item>& items, const Item& item, const Item& active)
{
    items.erase(std::remove(items.begin(), items.end(), item), items.end());
    if (active != item)
        return active;
    return items.empty() ? Item() : items.back();
}

namespace
{
// A command's progress window, until the command has ended or raised.
class Progress
{
public:
    Progress(IHostFrontend* frontend, const QString& title, int steps) : mFrontend(frontend)
    {
        if (mFrontend != nullptr)
            mFrontend->BeginCommand(title, steps);
    }
    ~Progress()
    {
        if (mFrontend != nullptr)
            mFrontend->EndCommand();
    }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

private:
    IHostFrontend* mFrontend;
};
}  // namespace

template <class Items>
static auto FindByPath(const Items& items, const QString& path)
{
    return std::find_if(items.begin(), items.end(),
                        [&](const auto& item) { return item->GetPath() == path; });
}

ScribusHost::ScribusHost(const ScribusSetup& setup) : mRunner(setup) {}

ScribusHost::~ScribusHost() = default;

void ScribusHost::SetFrontend(IHostFrontend* frontend)
{
    mFrontend = frontend;
    mRunner.SetFrontend(frontend);
}

GResult ScribusHost::OpenDocument(const QString& path)
{
    const QString file = MakeAbsolute(path);
    const auto open = FindByPath(mDocuments, file);
    if (open == mDocuments.end())
        return Show(TakeDocument(file));
    mActiveDocument = *open;
    return GResult::Success();
}

GResult ScribusHost::NewDocument(const QString& templatePath)
{
    DocumentPtr document;
    return ScribusDocument::MakeFromTemplate(mRunner, templatePath, mUntitledCount + 1, document)
        .Then([&] { return Show(document); })
        .Then([&] {
            ++mUntitledCount;
            return GResult::Success();
        });
}

// Asks Scribus about the document, and makes it one of the user's and the active one.
GResult ScribusHost::Show(const DocumentPtr& document)
{
    if (document->GetInfo() == nullptr)
        return GResult::Failure(document->GetError());
    mDocuments.push_back(document);
    mActiveDocument = document;
    return GResult::Success();
}

void ScribusHost::CloseDocument(const DocumentPtr& document)
{
    KeepForLater(document);
    mActiveDocument = TakeOut(mDocuments, document, mActiveDocument);
}

GResult ScribusHost::OpenBook(const QString& path)
{
    const auto open = FindByPath(mBooks, MakeAbsolute(path));
    if (open != mBooks.end()) {
        mActiveBook = *open;
        return GResult::Success();
    }
    return BookFile::Read(path, mActiveBook).Then([this] {
        mBooks.push_back(mActiveBook);
        return GResult::Success();
    });
}

ScribusHost::BookPtr ScribusHost::NewBook(const QString& path)
{
    mActiveBook = std::make_shared<BookFile>(path);
    mBooks.push_back(mActiveBook);
    return mActiveBook;
}

void ScribusHost::CloseBook(const BookPtr& book)
{
    mActiveBook = TakeOut(mBooks, book, mActiveBook);
}

ModalToken ScribusHost::AcquireModalToken()
{
    mModalTokens.push_back(++mLastModalToken);
    return mLastModalToken;
}

void ScribusHost::HandBackModalToken(ModalToken token)
{
    mModalTokens.erase(std::remove(mModalTokens.begin(), mModalTokens.end(), token), mModalTokens.end());
}

void ScribusHost::KeepForLater(const DocumentPtr& document)
{
    if (!document->IsSaved())
        return;
    const auto known = FindByPath(mRecentDocuments, document->GetPath());
    if (known != mRecentDocuments.end())
        mRecentDocuments.erase(known);
    mRecentDocuments.push_back(document);
    const size_t bookSize = mActiveBook ? static_cast<size_t>(mActiveBook->GetDocuments().size()) : 0;
    if (mRecentDocuments.size() > cRecentKept + bookSize)
        mRecentDocuments.erase(mRecentDocuments.begin());
}

ScribusHost::DocumentPtr ScribusHost::TakeDocument(const QString& path)
{
    const QString file = MakeAbsolute(path);
    if (const DocumentPtr open = FindDocument(file))
        return open;
    const auto recent = FindByPath(mRecentDocuments, file);
    if (recent != mRecentDocuments.end())
        return *recent;
    const auto document = std::make_shared<ScribusDocument>(mRunner, file);
    KeepForLater(document);
    return document;
}

std::optional<ErrorCode> ScribusHost::AskAboutBook(const QString& path)
{
    if (!mActiveBook || !mActiveBook->GetDocuments().contains(path))
        return std::nullopt;
    QStringList paths = mActiveBook->GetDocuments();
    paths.removeDuplicates();
    std::vector<DocumentPtr> documents;
    for (const QString& document : paths)
        documents.push_back(TakeDocument(document));
    return RunCommand(QStringLiteral("Check Fonts"), qMax(1, paths.size()),
                      [&](const BeginStep& step) { return ScribusDocument::AskAbout(documents, step); });
}

ScribusHost::DocumentPtr ScribusHost::FindDocument(const QString& path) const
{
    const QString file = MakeAbsolute(path);
    for (const auto* documents : {&mDocuments, &mHiddenDocuments}) {
        const auto found = FindByPath(*documents, file);
        if (found != documents->end())
            return *found;
    }
    return nullptr;
}

ScribusHost::DocumentPtr ScribusHost::FindDocument(const IDataBase* database) const
{
    for (const auto* documents : {&mDocuments, &mHiddenDocuments}) {
        for (const DocumentPtr& document : *documents) {
            if (HostDocuments::GetDataBase(*document) == database)
                return document;
        }
    }
    return nullptr;
}

GResult ScribusHost::SaveDocument(ScribusDocument& document)
{
    if (document.IsSaved())
        return GResult::Success();
    const QString path = mFrontend != nullptr ? mFrontend->AskForSavePath(document.GetName()) : QString();
    return path.isEmpty() ? GResult::Cancellation() : document.SaveAs(path);
}

void ScribusHost::TellOfFailure(const QString& what, const GResult& result)
{
    GTrace::Error(what, result.GetReason());
    if (result.WasCancelled() && mCancelObserver != nullptr)
        mCancelObserver->OnCommandCancelled();
}

ErrorCode ScribusHost::RunCommand(const QString& title, int steps, const Work& work)
{
    const auto result = [&] {
        const Progress progress(mFrontend, title, steps);
        return work([this](const QString& text) {
            if (mFrontend != nullptr)
                mFrontend->BeginStep(text);
        });
    }();
    mLastFailure = result.GetReason();
    if (result.HasSucceeded())
        return cSuccess;
    TellOfFailure(title, result);
    return cFailure;
}

void ScribusHost::SetLastPDF(const QString& path, const QJsonObject& report)
{
    ++mExportCount;
    mLastPDF = path;
    mLastReport = report;
    const QFileInfo pdf(path);
    const GResult written =
        GDurableFile::Replace(pdf.dir().filePath(pdf.completeBaseName() + QLatin1String(".report.json")),
                              QJsonDocument(report).toJson());
    if (!written.HasSucceeded())
        GTrace::Error(QStringLiteral("ScribusHost::SetLastPDF"), written.GetReason());
}

HostPtr<ISession> ScribusHost::QuerySession()
{
    return HostSession::MakeSession(*this);
}

HostPtr<IUnitOfMeasureSettings> ScribusHost::QueryUnitPreferences(IActiveContext*)
{
    return HostSession::MakeUnits(mUnit);
}

HostPtr<ILayoutUtils> ScribusHost::QueryLayoutUtils()
{
    return HostDocuments::MakeLayoutUtils(*this);
}

HostPtr<IDocumentUtils> ScribusHost::QueryDocumentUtils()
{
    return HostDocuments::MakeDocumentUtils(*this);
}

HostPtr<IModalUtils> ScribusHost::QueryModalUtils()
{
    return HostSession::MakeModalUtils(*this);
}

HostPtr<ICommand> ScribusHost::CreateCommand(ClassID command)
{
    return HostCommand::Make(*this, command);
}

ErrorCode ScribusHost::ProcessCommand(ICommand& command)
{
    return static_cast<HostCommand&>(command).Run();
}

HostPtr<IObjectModel> ScribusHost::QueryObjectModel()
{
    return HostPackages::MakeObjectModel(*this);
}

int32_t ScribusHost::ModalAlert(const PMString& text, const PMString& button1, const PMString& button2,
                                const PMString& button3, int32_t defaultButton, int32_t cancelButton)
{
    if (mFrontend == nullptr) {
        GTrace::Error(QStringLiteral("ScribusHost::ModalAlert"), text.GetString());
        return defaultButton;
    }
    return mFrontend->ShowAlert(text.GetString(), button1.GetString(), button2.GetString(),
                                button3.GetString(), defaultButton, cancelButton);
}
