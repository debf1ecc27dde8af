#include "hosts/scribus/documents/DocumentInquiry.h"

#include "hosts/scribus/runner/AnswerCache.h"
#include "hosts/scribus/runner/ScribusRunner.h"
#include "hosts/scribus/sla/SlaFile.h"
#include "hosts/scribus/sla/SlaFonts.h"
#include "hosts/scribus/sla/SlaLinks.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>

namespace
{
AnswerCache GetCache(const ScribusRunner& runner)
{
    return AnswerCache(runner.GetHome() + QStringLiteral("/answers"));
}

QByteArray MakeKey(const QString& path)
{
    return "document " + path.toUtf8();
}

QByteArray MakeCondition(const ScribusRunner& runner, const FileStamp& stamp)
{
    return runner.GetMark() + QByteArray::number(stamp.size) + ' ' + QByteArray::number(stamp.modified) +
           ' ' + QByteArray::number(stamp.node);
}

// The states of the files of the fonts, as a text. A font that is missing has none, and may come at any time.
QJsonObject StampFonts(const QJsonObject& values)
{
    QJsonObject stamps;
    for (const QJsonValue& font : values.value(QLatin1String("fonts")).toArray()) {
        const QString file = font[QLatin1String("file")].toString();
        const FileStamp stamp = FileStamp::Of(file);
        stamps.insert(file, QStringLiteral("%1 %2").arg(stamp.size).arg(stamp.modified));
    }
    return stamps;
}

// Whether a font is missing that a text uses.
bool LacksFonts(const QJsonObject& values, const QByteArray& text)
{
    const auto used = SlaFonts::FindUsed(text);
    const QJsonArray fonts = values.value(QLatin1String("fonts")).toArray();
    return std::any_of(fonts.begin(), fonts.end(), [&](const QJsonValue& font) {
        return font[QLatin1String("missing")].toBool() &&
               used.contains(font[QLatin1String("name")].toString());
    });
}
}  // namespace

void DocumentInquiry::Add(const QString& path, const FileStamp& stamp)
{
    Answer answer;
    answer.path = path;
    answer.stamp = stamp;
    mAnswers.push_back(answer);
}

GResult DocumentInquiry::Run(const BeginStep& beginStep)
{
    bool isComplete = true;
    for (Answer& answer : mAnswers) {
        answer.presentForm = mRunner.MakeScratchPath(QStringLiteral("sla"));
        answer.isThere = FindKept(answer);
        isComplete = isComplete && answer.isThere;
    }
    GResult result = GResult::Success();
    while (!isComplete && result.HasSucceeded()) {
        result = AskScribus(beginStep);
        isComplete = std::all_of(mAnswers.begin(), mAnswers.end(),
                                 [](const Answer& answer) { return answer.isThere; });
    }
    return result;
}

// One start of Scribus for all documents that have no answer yet. The first of them has one afterwards.
GResult DocumentInquiry::AskScribus(const BeginStep& beginStep)
{
    std::vector<std::pair<Answer*, QString>> asked;
    QJsonArray list;
    for (Answer& answer : mAnswers) {
        if (answer.isThere)
            continue;
        asked.emplace_back(&answer, mRunner.MakeScratchPath(QStringLiteral("json")));
        list.append(QJsonObject{{QStringLiteral("document"), answer.path},
                                {QStringLiteral("copy"), answer.presentForm},
                                {QStringLiteral("answer"), asked.back().second}});
    }
    size_t begun = 0;
    const auto look = [&] {
        for (; beginStep && begun < asked.size() && (begun == 0 || QFile::exists(asked[begun - 1].second));
             ++begun)
            beginStep(asked[begun].first->path);
    };
    look();
    QFile file(mRunner.MakeScratchPath(QStringLiteral("json")));
    if (!file.open(QIODevice::WriteOnly) || file.write(QJsonDocument(list).toJson()) < 0 || !file.flush())
        return GResult::Failure(QStringLiteral("The file \"%1\" can't be written.").arg(file.fileName()));
    const ScribusAnswer whole =
        mRunner.RunScript(QStringLiteral("info"), {{QStringLiteral("list"), file.fileName()}},
                          {static_cast<int>(asked.size()), look});
    file.remove();
    bool hasFirst = false;
    for (const auto& [answer, path] : asked) {
        answer->isThere = ReadAnswer(*answer, path);
        hasFirst = hasFirst || answer->isThere;
        // What ended Scribus is the fault of the document at which it was.
        if (!answer->isThere && !hasFirst && !whole.WasCancelled()) {
            answer->error =
                whole.HasSucceeded() ? QStringLiteral("Scribus gave no answer.") : whole.GetReason();
            answer->isThere = hasFirst = true;
        }
    }
    return whole.WasCancelled() ? GResult::Cancellation() : GResult::Success();
}

// False when Scribus has not come to the document, or is to be asked again.
bool DocumentInquiry::ReadAnswer(Answer& answer, const QString& path)
{
    ScribusAnswer given = GResult::Success();
    if (!mRunner.ReadAnswer(path, given) || given.values.contains(QLatin1String("again")))
        return false;
    answer.error = given.GetReason();
    answer.values = given.values;
    if (given.HasSucceeded())
        Keep(answer);
    return true;
}

bool DocumentInquiry::FindKept(Answer& answer) const
{
    const QByteArray kept =
        GetCache(mRunner).Find(MakeKey(answer.path), MakeCondition(mRunner, answer.stamp));
    const int end = kept.indexOf('\n');
    const QJsonObject head = QJsonDocument::fromJson(kept.left(end)).object();
    const QJsonObject values = head.value(QLatin1String("values")).toObject();
    QFile copy(answer.presentForm);
    if (end < 0 || head.value(QLatin1String("fonts")).toObject() != StampFonts(values) ||
        !copy.open(QIODevice::WriteOnly) || copy.write(kept.mid(end + 1)) != kept.size() - end - 1)
        return false;
    answer.values = values;
    return true;
}

// The links of the copy lead from another folder next time.
void DocumentInquiry::Keep(const Answer& answer) const
{
    QByteArray text;
    bool isPacked = false;
    if (FileStamp::Of(answer.path) != answer.stamp ||
        !SlaFile::Read(answer.presentForm, text, isPacked).HasSucceeded() || LacksFonts(answer.values, text))
        return;
    const QJsonObject head{{QStringLiteral("values"), answer.values},
                           {QStringLiteral("fonts"), StampFonts(answer.values)}};
    GetCache(mRunner).Keep(MakeKey(answer.path), MakeCondition(mRunner, answer.stamp),
                           QJsonDocument(head).toJson(QJsonDocument::Compact) + '\n' +
                               SlaLinks::MakeLinksAbsolute(text, QFileInfo(answer.presentForm).path()));
}
