#include "export/dialog/HopboxList.h"

#include "foundation/core/GException.h"
#include "foundation/prefs/GPrefFileModule.h"
#include "foundation/strings/GStringPool.h"
#include "foundation/trace/GTrace.h"
#include "hopbox/HopboxRegistry.h"

#include <QCollator>

#include <algorithm>

// Sorts as the language of the texts around the list does: "deDE" is the locale "de_DE".
static QCollator MakeCollator()
{
    GString language;
    GStringPool::GetLanguage(language);
    return QCollator(QLocale(language.insert(2, QLatin1Char('_'))));
}

HopboxRecord HopboxList::Item::GetRecord() const
{
    HopboxRecord record;
    const bool isRead = record.FromText(recordText);
    Q_ASSERT(isRead);
    static_cast<void>(isRead);
    return record;
}

HopboxList HopboxList::Read()
{
    HopboxList list;
    const HopboxRegistry registry;
    std::vector<std::pair<GString, GString>> texts = registry.GetRecordTexts();
    list.mIsWhole = !registry.GetDamage();
    list.mItems.reserve(texts.size());
    for (auto& [key, recordText] : texts) {
        HopboxOffer offer;
        if (!offer.FromText(recordText))
            list.mUnreadableKeys.append(key);
        else if (offer.isPlugin)
            list.mItems.push_back({key, offer.pdfSettings.isEmpty() ? key : std::move(offer.pdfSettings),
                                   std::move(recordText)});
    }
    list.Sort();
    return list;
}

// By way of pointers, as the items themselves are large.
void HopboxList::Sort()
{
    std::vector<Item*> order;
    order.reserve(mItems.size());
    for (Item& item : mItems)
        order.push_back(&item);
    const auto orderBy = [](const auto& compareTexts) {
        return [&compareTexts](const Item* left, const Item* right) {
            const int result = compareTexts(left->text, right->text);
            return result != 0 ? result < 0 : left->key < right->key;
        };
    };
    // A language's comparison takes long, and the order of the characters' codes is often the same. Not by
    // sort keys, whose order is another one on Windows.
    const auto compareCodes = [](const GString& left, const GString& right) { return left.compare(right); };
    const auto compare = [collator = MakeCollator()](const GString& left, const GString& right) {
        return collator.compare(left, right);
    };
    std::sort(order.begin(), order.end(), orderBy(compareCodes));
    if (!std::is_sorted(order.begin(), order.end(), orderBy(compare)))
        std::sort(order.begin(), order.end(), orderBy(compare));
    std::vector<Item> sorted;
    sorted.reserve(mItems.size());
    for (Item* item : order)
        sorted.push_back(std::move(*item));
    mItems.swap(sorted);
}

QStringList HopboxList::GetPreferenceGroups() const
{
    QStringList groups;
    for (const Item& item : mItems)
        groups.append(item.GetRecord().GetPreferenceGroup(item.key));
    return groups;
}

int HopboxList::FindKey(const GString& key) const
{
    const auto found =
        std::find_if(mItems.begin(), mItems.end(), [&](const Item& item) { return item.key == key; });
    return found == mItems.end() ? -1 : static_cast<int>(found - mItems.begin());
}

bool HopboxList::Withdraw(const GString& key)
{
    try {
        return !key.isEmpty() &&
               HopboxRegistry().ChangeEntry(key, [](HopboxRegistryEntry& entry) { entry.isPlugin = false; });
    } catch (const GException& error) {
        GTrace::Error(QStringLiteral("HopboxList::Withdraw"), error.GetDescription());
        return false;
    }
}
