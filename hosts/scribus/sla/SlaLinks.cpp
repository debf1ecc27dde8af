#include "hosts/scribus/sla/SlaLinks.h"

#include "hosts/scribus/sla/SlaContent.h"
#include "hosts/scribus/sla/SlaFile.h"
#include "hosts/scribus/sla/SlaScanner.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

QByteArray SlaLinks::RewriteLinks(const QByteArray& text, const Rewrite& rewrite)
{
    SlaEdit edit(text);
    SlaScanner element({text.constData(), static_cast<size_t>(text.size())});
    while (element.Next()) {
        std::vector<std::pair<SlaScanner::Place, QString>> changes;
        for (const std::string_view attribute : SlaContent::GetLinkAttributes(element)) {
            const QString link = element.GetText(attribute);
            const QString changed = link.isEmpty() ? link : rewrite(link);
            if (changed != link)
                changes.emplace_back(element.GetPlace(attribute), changed);
        }
        std::sort(changes.begin(), changes.end(),
                  [](const auto& left, const auto& right) { return left.first.offset < right.first.offset; });
        for (const auto& [place, value] : changes)
            edit.Replace(place, value);
    }
    return edit.Finish();
}

QByteArray SlaLinks::MakeLinksAbsolute(const QByteArray& text, const QString& folder)
{
    const QDir start(folder);
    return RewriteLinks(text,
                        [&](const QString& link) { return QDir::cleanPath(start.absoluteFilePath(link)); });
}

GResult SlaLinks::CopyDocument(const QString& source, const QString& target)
{
    QByteArray text;
    bool isPacked = false;
    return SlaFile::Read(source, text, isPacked).Then([&] {
        const QByteArray copy = MakeLinksAbsolute(text, QFileInfo(source).absolutePath());
        return SlaFile::Write(target, copy, target.endsWith(QLatin1String(".gz")));
    });
}
