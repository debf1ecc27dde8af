#include "export/DocumentSource.h"

#include "hopbox/HopboxFolder.h"
#include "plugin/host/HostCalls.h"
#include "plugin/host/HostFault.h"

HostPtr<IDocument> DocumentSource::QueryFront()
{
    const HostPtr<ILayoutUtils> layout = UtilsBoss::QueryUtils<ILayoutUtils>();
    return layout ? layout->QueryFrontDocument() : HostPtr<IDocument>();
}

std::optional<QStringList> DocumentSource::GetMissingFonts(const IDocument& document)
{
    const HostPtr<IFontList> fonts = document.QueryFontList();
    if (!fonts)
        return std::nullopt;
    fonts->Update();
    QStringList names;
    const int32_t count = HostFault::CheckCount(fonts->GetMissingFontCount());
    for (int32_t index = 0; index < count; ++index)
        names.append(fonts->GetNthMissingFontName(index).GetString());
    return names;
}

GString DocumentSource::GetOutputName(const IDocument& document)
{
    const PMString file = document.GetFile().GetFileName();
    return GetOutputName((file.IsEmpty() ? document.GetName() : file).GetString());
}

GString DocumentSource::GetOutputName(const GString& fileName)
{
    const int dot = fileName.lastIndexOf(QLatin1Char('.'));
    return HopboxFolder::MakeName(dot > 0 ? fileName.left(dot) : fileName);
}
