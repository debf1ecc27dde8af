#include "export/BookExport.h"

#include "export/BookDocument.h"
#include "export/BookSource.h"
#include "export/DocumentSource.h"
#include "plugin/host/HostCalls.h"
#include "plugin/host/HostFault.h"
#include "plugin/messages/ErrorText.h"
#include "plugin/messages/MessageCodes.h"

BookExport::BookExport(const GCPTSaveAsProperties& properties, const GPathName& workFolder)
    : PDFStep(properties, workFolder)
{
}

BookExport::~BookExport() = default;

bool BookExport::Execute()
{
    return FindBook() && CheckDocuments() && SaveBook() && SetPreferences() && RunExport();
}

bool BookExport::FindBook()
{
    if (const uint32_t code = BookSource::FindActive(mBook))
        return Fail(code);
    mContent = mBook->QueryContent();
    return mContent || Fail(PlugInMessage::cBookInvalid);
}

bool BookExport::CheckDocuments()
{
    const int32_t count = HostFault::CheckCount(mContent->GetDocumentCount());
    for (int32_t index = 0; index < count; ++index)
        if (!CountMissingFonts(mContent->GetNthDocumentFile(index)))
            return false;
    return CheckMissingFonts(mMissingFontCount, mFontDetail);
}

bool BookExport::CountMissingFonts(const IDFile& file)
{
    const BookDocument document(file);
    if (document.GetError() != 0)
        return Fail(document.GetError());
    const QStringList missing = DocumentSource::GetMissingFonts(document.Get()).value_or(QStringList());
    if (missing.isEmpty())
        return true;
    mMissingFontCount += missing.size();
    mFontDetail += QLatin1Char('\n') + file.GetFileName().GetString() + QStringLiteral(" : ") +
                   ErrorText::GetMissingFontDetail(missing);
    return true;
}

// A package of the book is made from its file, so a book that can't be written ends the export. There is no
// message for it.
bool BookExport::SaveBook()
{
    return !mBook->IsModified() || mBook->Save() == cSuccess;
}

// The book's command has no preferences of its own: it takes those of the application, which this command
// sets.
bool BookExport::SetPreferences()
{
    const HostPtr<ICommand> command = CmdUtils::CreateCommand(HostClassID::cPDFPreferencesCommand);
    if (!command)
        return Fail(PlugInMessage::cPDFPreferencesNotFound);
    return ApplyJobOptions(*command) && CmdUtils::ProcessCommand(*command) == cSuccess;
}

bool BookExport::RunExport()
{
    const IDFile file = ReservePDF(BookSource::GetOutputName(*mBook));
    const HostPtr<ICommand> command = CmdUtils::CreateCommand(HostClassID::cBookExportCommand);
    const HostPtr<IBookExportData> data =
        command ? command->QueryBookExportData() : HostPtr<IBookExportData>();
    if (!data)
        return Fail(PlugInMessage::cPDFExportCommandNotFound);
    return CallHost(PlugInMessage::cPDFExportCommandNotFound, [&] {
        data->SetBook(*mBook);
        data->SetDocuments(*mContent);
        data->SetOutputFile(file);
        return WritePDF(*command) || Fail(PlugInMessage::cPDFExportCommandNotFound);
    });
}
