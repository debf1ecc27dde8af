#include "hosts/scribus/pdf/SettingsReport.h"

#include "hosts/scribus/pdf/JobOptionRows.h"
#include "joboptions/JobOptions.h"

#include <QJsonObject>
#include <QSet>

#include <algorithm>

namespace
{
using Type = PostScriptValue::Type;
using Section = JobOptionRow::Section;
using Answer = JobOptionRow::Answer;

constexpr int cLongestText = 200;

// A value as job options write it.
QString GetText(const PostScriptValue& value)
{
    QStringList items;
    for (const PostScriptValue& item : value.GetItems())
        items.append(GetText(item));
    switch (value.GetType()) {
        case Type::Null:
            return QStringLiteral("null");
        case Type::Boolean:
            return value.GetBoolean() ? QStringLiteral("true") : QStringLiteral("false");
        case Type::Number:
            return QString::number(value.GetNumber());
        case Type::Name:
            return QLatin1Char('/') + value.GetText();
        case Type::String:
            return QLatin1Char('(') + value.GetText() + QLatin1Char(')');
        case Type::Array:
            return QLatin1Char('[') + items.join(QLatin1Char(' ')) + QLatin1Char(']');
        case Type::Dictionary:
            break;
    }
    return QStringLiteral("<< %1 >>").arg(items.join(QLatin1Char(' ')));
}

QString GetAnswerText(Answer answer)
{
    static const char* const cTexts[] = {"honoured", "honoured afterwards", "approximated", "not possible",
                                         "no meaning"};
    return QLatin1String(cTexts[static_cast<int>(answer)]);
}

bool IsExact(const JobOptionRow& row, const QString& asked)
{
    if (row.answer != Answer::Approximated && row.answer != Answer::NotPossible)
        return true;
    return row.exact != nullptr && QString::fromLatin1(row.exact).split(QLatin1Char('|')).contains(asked);
}

class Teller
{
public:
    explicit Teller(const JobOptions& options) : mOptions(options) {}

    void Tell(Section section, const std::vector<PostScriptValue>& dictionaries)
    {
        for (const PostScriptValue& dictionary : dictionaries) {
            const std::vector<PostScriptValue>& items = dictionary.GetItems();
            for (size_t i = 0; dictionary.Is(Type::Dictionary) && i + 1 < items.size(); i += 2)
                TellKey(section, items[i].GetText());
        }
    }

    const QJsonArray& GetAnswers() const { return mAnswers; }

private:
    void TellKey(Section section, const QString& key)
    {
        const QString place = QString::number(static_cast<int>(section)) + key;
        if (mTold.contains(place))
            return;
        mTold.insert(place);
        const std::vector<JobOptionRow>& rows = JobOptionRow::GetAll();
        const auto row = std::find_if(rows.begin(), rows.end(), [&](const JobOptionRow& candidate) {
            return candidate.section == section && key == QLatin1String(candidate.key);
        });
        if (row == rows.end()) {
            // What each dictionary says of itself.
            if (key != QLatin1String("Namespace"))
                Add(key, QString(), QStringLiteral("unknown"),
                    QStringLiteral("this program does not know it"));
            return;
        }
        const PostScriptValue* value = row->Find(mOptions);
        const QString asked = value == nullptr ? QString() : GetText(*value);
        if (!IsExact(*row, asked))
            Add(key, asked, GetAnswerText(row->answer), QString::fromUtf8(row->note));
    }

    void Add(const QString& key, const QString& asked, const QString& answer, const QString& note)
    {
        mAnswers.append(QJsonObject{{QStringLiteral("key"), key},
                                    {QStringLiteral("asked"), asked.left(cLongestText)},
                                    {QStringLiteral("answer"), answer},
                                    {QStringLiteral("note"), note}});
    }

    const JobOptions& mOptions;
    QSet<QString> mTold;
    QJsonArray mAnswers;
};

// The rows of a section as a table, by key.
QByteArray MakeTable(Section section)
{
    std::vector<const JobOptionRow*> rows;
    for (const JobOptionRow& row : JobOptionRow::GetAll()) {
        if (row.section == section)
            rows.push_back(&row);
    }
    std::sort(rows.begin(), rows.end(),
              [](const auto* left, const auto* right) { return qstrcmp(left->key, right->key) < 0; });
    QByteArray table = "| setting | answer | exactly | what happens |\n|---|---|---|---|\n";
    for (const JobOptionRow* row : rows) {
        QString exact = QString::fromLatin1(row->exact);
        exact = exact.isEmpty()
                    ? exact
                    : QStringLiteral("`%1`").arg(exact.replace(QLatin1Char('|'), QLatin1String("`, `")));
        table += "| `" + QByteArray(row->key) + "` | " + GetAnswerText(row->answer).toUtf8() + " | " +
                 exact.toUtf8() + " | " + QByteArray(row->note) + " |\n";
    }
    return table;
}
}  // namespace

QJsonArray SettingsReport::Make(const JobOptions& options)
{
    Teller teller(options);
    teller.Tell(Section::Parameters, options.GetParameters());
    teller.Tell(Section::Device, options.GetDeviceSettings());
    if (const PostScriptValue* namespaces = options.FindParameter("OtherNamespaces"))
        teller.Tell(Section::Namespaces, namespaces->GetItems());
    return teller.GetAnswers();
}

QByteArray SettingsReport::MakePage()
{
    return "Parameters (`setdistillerparams`):\n\n" + MakeTable(Section::Parameters) +
           "\nThe page device (`setpagedevice`):\n\n" + MakeTable(Section::Device) +
           "\nThe dictionaries in the array `OtherNamespaces`, which hold what a layout application "
           "adds:\n\n" +
           MakeTable(Section::Namespaces);
}
