#include "Content.h"

#include <random>

namespace
{
QString MakeValue(int group, int entry)
{
    switch (entry % 5) {
        case 0:
            return entry % 2 == 0 ? QStringLiteral("true") : QStringLiteral("false");
        case 1:
            return QString::number(group * 1000 + entry);
        case 2:
            return QStringLiteral("Gr\u00F6\u00DFe \u4E2D %1").arg(entry);
        case 3:
            return QStringLiteral("C:\\Users\\Someone\\Documents\\Job %1\\Print file %2.pdf")
                .arg(group)
                .arg(entry);
        default:
            return QStringLiteral("#BEGINTABLE\r\n\"one of %1\"\r\n\"two of %2\"\r\n#ENDTABLE\r\n")
                .arg(group)
                .arg(entry);
    }
}
}  // namespace

Content::Place Content::MakePlace(int group, int entry)
{
    const QString groupName = QStringLiteral("Group of settings %1").arg(group);
    const QString key = QStringLiteral("SettingsEntry%1").arg(entry);
    return {groupName.toUtf8(), key.toUtf8(), groupName + QLatin1Char('/') + key, MakeValue(group, entry)};
}

void Content::ForEach(int groups, int entries, const std::function<void(const Place& place)>& operation)
{
    for (int group = 0; group < groups; ++group) {
        for (int entry = 0; entry < entries; ++entry)
            operation(MakePlace(group, entry));
    }
}

const std::vector<Content::Place>& Content::GetSample()
{
    static const std::vector<Place> sample = [] {
        std::mt19937 random(1);
        std::vector<Place> places;
        for (int count = 0; count < 4096; ++count)
            places.push_back(
                MakePlace(static_cast<int>(random() % cGroups), static_cast<int>(random() % cEntries)));
        return places;
    }();
    return sample;
}
