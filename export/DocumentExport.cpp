#include "export/DocumentExport.h"

#include "export/OutputSettings.h"
#include "hopbox/HopboxFolder.h"
#include "plugin/host/HostCalls.h"
#include "plugin/messages/ErrorText.h"
#include "plugin/messages/MessageCodes.h"

#include <QStringList>

namespace
{
// Under which name the document's PDF goes: the file's, or that in the window for a document without a file.
GString GetPDFName(const IDocument& document)
{
    const GString file = document.GetFile().GetFileName().GetString();
    const GString name = file.isEmpty() ? document.GetName().GetString() : file;
    const int dot = name.lastIndexOf(QLatin1Char('.'));
    return HopboxFolder::MakeName(dot > 0 ? name.left(dot) : name) + QStringLiteral(".pdf");
}

// The pages to export; none where the range names none, or where the host can't give one of them.
UIDList GetPages(const IDocument& document, const GCPTSaveAsProperties& properties)
{
    UIDList pages(document.GetDataBase());
    const HostPtr<IPageList> list = document.QueryPageList();
    if (!list)
        return pages;
    if (properties.hasPageRange) {
        if (list->GetPageUIDs(PMString::Untranslated(properties.pageRange), pages) != cSuccess)
            pages.Clear();
        return pages;
    }
    const int32_t count = list->GetPageCount();
    for (int32_t index = 0; index < count; ++index) {
        const UID page = list->GetNthPage(index);
        if (page == cNoUID)
            return UIDList(document.GetDataBase());
        pages.Append(page);
    }
    return pages;
}

QStringList GetMissingFonts(const IFontList& fonts)
{
    QStringList names;
    for (int32_t index = 0; index < fonts.GetMissingFontCount(); ++index)
        names.append(fonts.GetNthMissingFontName(index).GetString());
    return names;
}
}  // namespace

DocumentExport::DocumentExport(const GCPTSaveAsProperties& properties, const GPathName& workFolder)
    : mProperties(properties), mWorkFolder(workFolder)
{
}

DocumentExport::~DocumentExport() = default;

bool DocumentExport::Execute()
{
    return CreateCommand() && ApplyJobOptions() && TakeOutputFileData() && TakeDocument() && SaveDocument() &&
           SetOutputFile() && SetPages() && CheckFonts() && RunCommand();
}

bool DocumentExport::CreateCommand()
{
    mCommand = CmdUtils::CreateCommand(HostClassID::cPDFExportCommand);
    return mCommand || Fail(PlugInMessage::cPDFExportCommandNotFound);
}

bool DocumentExport::ApplyJobOptions()
{
    mPreferences = mCommand->QueryPDFExportPreferences();
    if (!mPreferences)
        return Fail(PlugInMessage::cPDFPreferencesNotFound);
    mJobOptions.emplace(mProperties.jobOptions);
    if (!mJobOptions->IsPlaced()) {
        mErrorText = mJobOptions->GetError();
        return false;
    }
    if (mPreferences->ReadJobOptions(IDFile(mJobOptions->GetPathName())) != cSuccess)
        return Fail(PlugInMessage::cJobOptionsUnreadable);
    ApplyOutputSettings(mProperties.outputSettings, *mPreferences);
    return true;
}

bool DocumentExport::TakeOutputFileData()
{
    mFileData = mCommand->QuerySystemFileData();
    return mFileData || Fail(PlugInMessage::cFileDataNotFound);
}

bool DocumentExport::TakeDocument()
{
    if (const HostPtr<ILayoutUtils> layout = UtilsBoss::QueryUtils<ILayoutUtils>())
        mDocument = layout->QueryFrontDocument();
    return mDocument || Fail(PlugInMessage::cNoDocument);
}

bool DocumentExport::SaveDocument()
{
    if (mDocument->IsSaved())
        return true;
    const HostPtr<IDocumentUtils> documents = UtilsBoss::QueryUtils<IDocumentUtils>();
    return (documents && documents->SaveDocument(*mDocument) == cSuccess) ||
           Fail(PlugInMessage::cDocumentNotSaved);
}

bool DocumentExport::SetOutputFile()
{
    WorkFolder::Make(mWorkFolder);
    mOutput.emplace(mWorkFolder, GetPDFName(*mDocument));
    mFileData->SetFile(IDFile(mOutput->GetPathName()));
    return true;
}

bool DocumentExport::SetPages()
{
    const UIDList pages = GetPages(*mDocument, mProperties);
    if (pages.IsEmpty())
        return Fail(PlugInMessage::cNoPages);
    const HostPtr<IOutputPages> output = mCommand->QueryOutputPages();
    if (!output)
        return Fail(PlugInMessage::cPDFExportFailed);
    output->SetPages(pages, mPreferences->GetReaderSpreads() == cReaderSpreadsOn);
    output->SetName(mDocument->GetName());
    return true;
}

bool DocumentExport::CheckFonts()
{
    const HostPtr<IFontList> fonts = mDocument->QueryFontList();
    if (!fonts)
        return Fail(PlugInMessage::cFontListNotFound);
    fonts->Update();
    const QStringList missing = GetMissingFonts(*fonts);
    if (missing.isEmpty())
        return true;
    return Fail(missing.size() == 1 ? PlugInMessage::cFontMissing : PlugInMessage::cFontsMissing,
                ErrorText::GetMissingFontDetail(missing));
}

bool DocumentExport::RunCommand()
{
    if (CmdUtils::ProcessCommand(*mCommand) != cSuccess)
        return Fail(PlugInMessage::cPDFExportFailed);
    mPDFPath = mOutput->GetPathName();
    mOutput->Keep();
    return true;
}

bool DocumentExport::Fail(uint32_t code, const GString& detail)
{
    mErrorText = ErrorText::Compose(code, detail);
    return false;
}
