#include "plugin/messages/ErrorText.h"

#include "foundation/core/GException.h"
#include "foundation/strings/GLngString.h"
#include "foundation/strings/GStringPool.h"
#include "plugin/host/HostFault.h"
#include "plugin/messages/MessageCodes.h"
#include "widgets/GCUSTranslation.h"

GString ErrorText::Compose(uint32_t code, const GString& detail)
{
    GLngString text(PlugInMessage::cFrame);
    text.AddStringID(code);
    return text.GetReadableString() + detail;
}

GString ErrorText::GetMissingFontDetail(const QStringList& fonts)
{
    const QChar lineBreak = QLatin1Char('\n');
    GString detail = lineBreak;
    for (int i = 0; i < fonts.size(); ++i)
        detail += QStringLiteral("    %1. ").arg(i + 1) + fonts[i] + lineBreak;
    return detail;
}

GString ErrorText::GetSettingNotFound(const GString& setting)
{
    GLngString text(PlugInMessage::cSettingNotFound);
    text.AddString(setting);
    return text.GetReadableString();
}

GString ErrorText::Describe(const GException& error)
{
    const GString& sentence = GStringPool::GetString(static_cast<uint32_t>(error.GetCode()));
    return sentence.contains(QStringLiteral("%1")) ? sentence.arg(error.GetDescription())
                                                   : error.GetDescription();
}

GString ErrorText::DescribeCurrent()
{
    try {
        throw;
    } catch (const GException& error) {
        return Describe(error);
    } catch (...) {
        return GCUSTranslation::Translate("HostFault", HostFault::Describe().toUtf8().constData());
    }
}
