#include "export/DocumentExport.h"

#include "export/DocumentSource.h"
#include "plugin/host/HostCalls.h"
#include "plugin/host/HostFault.h"
#include "plugin/messages/ErrorText.h"
#include "plugin/messages/MessageCodes.h"

namespace
{
bool HoldsNone(const UIDList& pages)
{
    for (int index = 0; index < pages.Length(); ++index)
        if (pages[index] == cNoUID)
            return true;
    return false;
}

// The pages to export; none where the range names none, or where the host can't give one of them.
UIDList GetPages(const IDocument& document, const GCPTSaveAsProperties& properties)
{
    UIDList pages(document.GetDataBase());
    const HostPtr<IPageList> list = document.QueryPageList();
    if (!list)
        return pages;
    if (properties.hasPageRange) {
        if (list->GetPageUIDs(PMString::Untranslated(properties.pageRange), pages) != cSuccess ||
            HoldsNone(pages))
            pages.Clear();
        return pages;
    }
    const int32_t count = HostFault::CheckCount(list->GetPageCount());
    for (int32_t index = 0; index < count; ++index) {
        const UID page = list->GetNthPage(index);
        if (page == cNoUID)
            return UIDList(document.GetDataBase());
        pages.Append(page);
    }
    return pages;
}
}  // namespace

DocumentExport::DocumentExport(const GCPTSaveAsProperties& properties, const GPathName& workFolder)
    : PDFStep(properties, workFolder)
{
}

DocumentExport::~DocumentExport() = default;

bool DocumentExport::Execute()
{
    return CreateCommand() && ApplyJobOptions(*mCommand) && TakeOutputFileData() && TakeDocument() &&
           SaveDocument() && SetOutputFile() && SetPages() && CheckFonts() && RunCommand();
}

bool DocumentExport::CreateCommand()
{
    mCommand = CmdUtils::CreateCommand(HostClassID::cPDFExportCommand);
    return mCommand || Fail(PlugInMessage::cPDFExportCommandNotFound);
}

bool DocumentExport::TakeOutputFileData()
{
    mFileData = mCommand->QuerySystemFileData();
    return mFileData || Fail(PlugInMessage::cFileDataNotFound);
}

bool DocumentExport::TakeDocument()
{
    mDocument = DocumentSource::QueryFront();
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
    const IDFile file = ReservePDF(DocumentSource::GetOutputName(*mDocument));
    return CallHost(PlugInMessage::cFileDataNotFound, [&] {
        mFileData->SetFile(file);
        return true;
    });
}

bool DocumentExport::SetPages()
{
    const UIDList pages = GetPages(*mDocument, GetProperties());
    if (pages.IsEmpty())
        return Fail(PlugInMessage::cNoPages);
    const HostPtr<IOutputPages> output = mCommand->QueryOutputPages();
    if (!output)
        return Fail(PlugInMessage::cPDFExportFailed);
    return CallHost(PlugInMessage::cPDFExportFailed, [&] {
        output->SetPages(pages, GetPreferences().GetReaderSpreads() == cReaderSpreadsOn);
        output->SetName(mDocument->GetName());
        return true;
    });
}

bool DocumentExport::CheckFonts()
{
    const std::optional<QStringList> missing = DocumentSource::GetMissingFonts(*mDocument);
    if (!missing)
        return Fail(PlugInMessage::cFontListNotFound);
    return CheckMissingFonts(missing->size(), ErrorText::GetMissingFontDetail(*missing));
}

bool DocumentExport::RunCommand()
{
    return WritePDF(*mCommand) || Fail(PlugInMessage::cPDFExportFailed);
}
