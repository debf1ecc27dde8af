#include "hopbox/HopboxJobTicket.h"

#include "foundation/core/GStringSupport.h"
#include "foundation/prefs/GDictBufferReader.h"
#include "foundation/prefs/GOrderedDictWriter.h"

namespace
{
// The names of the values, and their order in the text.
const GString cUserName = QStringLiteral("UserName");
const GString cJobPath = QStringLiteral("JobPath");
const GString cPrinterName = QStringLiteral("PrinterName");
const GString cPortName = QStringLiteral("PortName");
const GString cCopyCount = QStringLiteral("CopyCount");
const GString cPrinterID = QStringLiteral("PrinterID");

void ReadText(const GDict<GString, GString>& values, const GString& key, GString& target)
{
    if (const GString* value = values.Find(key))
        target = *value;
}
}  // namespace

bool HopboxJobTicket::IsValid() const
{
    return !userName.isEmpty() && !jobPath.isEmpty() && !printerName.isEmpty() && !portName.isEmpty() &&
           copyCount >= 1;
}

std::vector<std::pair<GString, GString>> HopboxJobTicket::GetValues() const
{
    return {{cUserName, userName},
            {cJobPath, jobPath},
            {cPrinterName, printerName},
            {cPortName, portName},
            {cCopyCount, GStringSupport::FromInt32(copyCount)},
            {cPrinterID, printerID}};
}

GString HopboxJobTicket::ToText() const
{
    GOrderedDictWriter writer;
    for (const auto& value : GetValues())
        writer.Add(value.first, value.second);
    return writer.Finish();
}

bool HopboxJobTicket::FromText(const GString& text)
{
    GDictBufferReader<GString, GString> reader;
    GDict<GString, GString> values;
    if (!reader.ReadText(text, values))
        return false;
    ReadText(values, cUserName, userName);
    ReadText(values, cJobPath, jobPath);
    ReadText(values, cPrinterName, printerName);
    ReadText(values, cPortName, portName);
    if (const GString* count = values.Find(cCopyCount))
        copyCount = GStringSupport::ToInt32(*count);
    ReadText(values, cPrinterID, printerID);
    return true;
}
