#include "export/HostDocuments.h"

#include "hopbox/HopboxFolder.h"
#include "plugin/host/HostCalls.h"

HostPtr<IDocument> HostDocuments::QueryFront()
{
    const HostPtr<ILayoutUtils> layout = UtilsBoss::QueryUtils<ILayoutUtils>();
    return layout ? layout->QueryFrontDocument() : HostPtr<IDocument>();
}

std::optional<QStringList> HostDocuments::GetMissingFonts(const IDocument& document)
{
    const HostPtr<IFontList> fonts = document.QueryFontList();
    if (!fonts)
        return std::nullopt;
    fonts->Update();
    QStringList names;
    for (int32_t index = 0; index < fonts->GetMissingFontCount(); ++index)
        names.append(fonts->GetNthMissingFontName(index).GetString());
    return names;
}

GString HostDocuments::GetOutputName(const IDocument& document)
{
    const PMString file = document.GetFile().GetFileName();
    return GetOutputName((file.IsEmpty() ? document.GetName() : file).GetString());
}

GString HostDocuments::GetOutputName(const GString& fileName)
{
    const int dot = fileName.lastIndexOf(QLatin1Char('.'));
    return HopboxFolder::MakeName(dot > 0 ? fileName.left(dot) : fileName);
}
