#include "export/PDFStep.h"

#include "export/OutputSettings.h"
#include "export/ProducedOutput.h"
#include "plugin/host/HostCalls.h"
#include "plugin/messages/MessageCodes.h"

PDFStep::PDFStep(const GCPTSaveAsProperties& properties, const GPathName& workFolder)
    : ExportStep(workFolder), mProperties(properties)
{
}

PDFStep::~PDFStep() = default;

bool PDFStep::ApplyJobOptions(ICommand& command)
{
    mPreferences = command.QueryPDFExportPreferences();
    if (!mPreferences)
        return Fail(PlugInMessage::cPDFPreferencesNotFound);
    mJobOptions.emplace(mProperties.jobOptions);
    if (!mJobOptions->IsPlaced())
        return FailWith(mJobOptions->GetError());
    return CallHost(PlugInMessage::cPDFPreferencesNotFound, [this] {
        if (mPreferences->ReadJobOptions(IDFile(mJobOptions->GetPathName())) != cSuccess)
            return Fail(PlugInMessage::cJobOptionsUnreadable);
        ApplyOutputSettings(mProperties.outputSettings, *mPreferences);
        return true;
    });
}

bool PDFStep::CheckMissingFonts(int count, const GString& detail)
{
    return count == 0 ||
           Fail(count == 1 ? PlugInMessage::cFontMissing : PlugInMessage::cFontsMissing, detail);
}

IDFile PDFStep::ReservePDF(const GString& name)
{
    return ReserveOutput(name + QStringLiteral(".pdf"), ReservedOutput::Kind::File);
}

bool PDFStep::WritePDF(ICommand& command)
{
    if (CmdUtils::ProcessCommand(command) != cSuccess || !ProducedOutput::IsPDF(GetReservedPath()))
        return false;
    KeepOutput();
    return true;
}
