#include "apps/hopboxctl/PrefsOutput.h"

#include "foundation/core/GBufferSupport.h"
#include "foundation/prefs/GDictBufferReader.h"
#include "foundation/prefs/GListReader.h"
#include "foundation/prefs/PrefMarkers.h"

#include <QJsonArray>
#include <QJsonObject>

#include <map>

namespace
{
using TextDict = GDict<GString, GString>;

QString GetShownKey(const GBuffer& key)
{
    return PrefsOutput::GetShownName(key);
}

QString GetShownKey(const GString& key)
{
    return key;
}

template <typename Key, typename Value>
std::map<QString, const Value*> GetSorted(const GDict<Key, Value>& dict)
{
    std::map<QString, const Value*> sorted;
    for (const auto& entry : dict)
        sorted[GetShownKey(entry.key)] = &entry.value;
    return sorted;
}

bool BeginsWith(const GString& text, QLatin1String marker)
{
    const int start = text.startsWith(QChar(QChar::ByteOrderMark)) ? 1 : 0;
    return text.midRef(start, marker.size()) == marker;
}

// Gives what the value unfolds to to one of three functions. A quote within a block needs twice the
// backslashes of the block around it, so the levels of a text are no more than the digits of its length.
template <typename WithDict, typename WithList, typename WithText>
void Unfold(const GString& value, WithDict withDict, WithList withList, WithText withText)
{
    TextDict dict;
    QStringList list;
    GDictBufferReader<GString, GString> reader;
    if (BeginsWith(value, PrefMarkers::cBeginDict) && reader.ReadText(value, dict))
        withDict(dict);
    else if (BeginsWith(value, PrefMarkers::cBeginList) && GListReader::ReadText(value, list))
        withList(list);
    else
        withText();
}

QString GetShownText(const QString& text)
{
    QString shown;
    for (const QChar character : text) {
        const ushort code = character.unicode();
        if (code < 0x20 || (code >= 0x7F && code < 0xA0))
            shown += QStringLiteral("\\x%1").arg(code, 2, 16, QLatin1Char('0'));
        else
            shown += character;
    }
    return shown;
}

class TextOutput
{
public:
    template <typename Key>
    void AddEntries(const GDict<Key, GString>& dict, int depth)
    {
        for (const auto& entry : GetSorted(dict))
            AddValue(GetShownText(entry.first) + QLatin1String(" ="), *entry.second, depth);
    }

    void AddLine(const QString& line, int depth)
    {
        mText += QString(4 * depth, QLatin1Char(' ')) + line + QLatin1Char('\n');
    }

    const QString& GetText() const { return mText; }

private:
    void AddValue(const QString& lead, const GString& value, int depth)
    {
        const auto addDict = [&](const TextDict& dict) {
            AddLine(lead + QLatin1String(" {"), depth);
            AddEntries(dict, depth + 1);
            AddLine(QStringLiteral("}"), depth);
        };
        const auto addList = [&](const QStringList& list) {
            AddLine(lead + QLatin1String(" ["), depth);
            for (const GString& element : list)
                AddValue(QStringLiteral("-"), element, depth + 1);
            AddLine(QStringLiteral("]"), depth);
        };
        const auto addText = [&] { AddLine(lead + QLatin1Char(' ') + GetShownText(value), depth); };
        Unfold(value, addDict, addList, addText);
    }

    QString mText;
};

QJsonValue GetJsonValue(const GString& value);

template <typename Key>
QJsonObject GetJsonObject(const GDict<Key, GString>& dict)
{
    QJsonObject object;
    for (const auto& entry : GetSorted(dict))
        object.insert(entry.first, GetJsonValue(*entry.second));
    return object;
}

QJsonValue GetJsonValue(const GString& value)
{
    QJsonValue result = value;
    const auto takeDict = [&result](const TextDict& dict) { result = GetJsonObject(dict); };
    const auto takeList = [&result](const QStringList& list) {
        QJsonArray array;
        for (const GString& element : list)
            array.append(GetJsonValue(element));
        result = array;
    };
    Unfold(value, takeDict, takeList, [] {});
    return result;
}
}  // namespace

QString PrefsOutput::GetShownName(const GBuffer& name)
{
    const QString text = QString::fromUtf8(name);
    return text.toUtf8() == name ? text : GBufferSupport::GetNameText(name);
}

QString PrefsOutput::GetText(const GPrefGroups& groups)
{
    TextOutput output;
    for (const auto& group : GetSorted(groups)) {
        output.AddLine(QLatin1Char('[') + GetShownText(group.first) + QLatin1Char(']'), 0);
        output.AddEntries(*group.second, 0);
    }
    return output.GetText();
}

QJsonObject PrefsOutput::GetJson(const GPrefGroups& groups)
{
    QJsonObject document;
    for (const auto& group : GetSorted(groups))
        document.insert(group.first, GetJsonObject(*group.second));
    return document;
}
