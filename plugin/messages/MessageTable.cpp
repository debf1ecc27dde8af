#include "plugin/messages/MessageTable.h"

#include "foundation/strings/GStringPool.h"
#include "foundation/strings/GStringPoolSupport.h"
#include "plugin/messages/MessageCodes.h"

#include <iterator>

static const GStringPoolDataStruct cMessages[] = {
    {PlugInMessage::cPlugInNotAcquired, "Can't acquire plug-in"},
    {PlugInMessage::cNoDocument, "No current document"},
    {PlugInMessage::cExportError, "Export as Stamplex PDF error"},
    {PlugInMessage::cHopboxNotLaunched,
     "Unable to automatically launch Hopbox. Launch the Hopbox manually and try again."},
    {PlugInMessage::cSettingNotFound, "Unable to retrieve PDF setting: %1"},
    {PlugInMessage::cFrame, "Plug-in Error: %1"},
    {PlugInMessage::cPDFExportCommandNotFound, "PDF Export command not found"},
    {PlugInMessage::cPDFExportFailed, "Unable to execute PDF Export command"},
    {PlugInMessage::cPDFPreferencesNotFound, "Unable to retrieve PDF Export preferences"},
    {PlugInMessage::cJobOptionsUnreadable,
     "Unable to read job options. Reselect the job options setting under the Printer tab and recreate the "
     "Hopbox again."},
    {PlugInMessage::cFileDataNotFound, "Unable to retrieve system file data"},
    {PlugInMessage::cFontMissing, "Font is Missing! Correct the following font and try again:"},
    {PlugInMessage::cFontsMissing, "Fonts are Missing! Correct the following fonts and try again:"},
    {PlugInMessage::cFontListNotFound, "Can't retrieve all fonts used in the document."},
    {PlugInMessage::cExportErrorTitle, "Export to Hopbox error"},
    {PlugInMessage::cPackageCommandNotFound, "Create Package command not found"},
    {PlugInMessage::cPackageFailed, "Unable to execute Create Package command"},
    {PlugInMessage::cReportCommandNotFound, "Create Package Report command not found"},
    {PlugInMessage::cReportFailed, "Unable to execute Create Package Report command"},
    {PlugInMessage::cDocumentNotSaved, "Unable to save current document. Save the document and try again."},
    {PlugInMessage::cDocumentInvalid, "Invalid document."},
    {PlugInMessage::cDocumentNotOpened, "Unable to open document."},
    {PlugInMessage::cBookInvalid, "Book is either empty or invalid."},
    {PlugInMessage::cNoBook, "No current book."},
};

static const GStringPoolDataStruct cTextsOfOtherCodes[] = {
    {PlugInMessage::cNoPages, "The pages to export are not in the document."},
};

void RegisterPlugInMessages()
{
    const GString encoding = QStringLiteral("WinAnsiEncoding");
    GStringPoolSupport::AddStringPoolData(GStringPool::cEnglish, encoding, cMessages, std::size(cMessages));
    GStringPoolSupport::AddStringPoolData(GStringPool::cEnglish, encoding, cTextsOfOtherCodes,
                                          std::size(cTextsOfOtherCodes));
}
