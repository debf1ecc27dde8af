#include "apps/printer_processor/inbox/JobJournalText.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace
{
constexpr int cCheckDigits = 8;
constexpr size_t cMostEnds = 384;  // as many receivers as a channel holds

const QString cKeeper = QStringLiteral("keeper");
const QString cJob = QStringLiteral("job");
const QString cQueue = QStringLiteral("queue");
const QString cPosition = QStringLiteral("position");
const QString cSender = QStringLiteral("sender");
const QString cPayload = QStringLiteral("payload");
const QString cReady = QStringLiteral("ready");
const QString cName = QStringLiteral("name");
const QString cLeftOut = QStringLiteral("left_out");
const QString cDone = QStringLiteral("done");
const QString cEnd = QStringLiteral("end");

GBuffer GetCheck(const GBuffer& text)
{
    return QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex().left(cCheckDigits);
}

GBuffer MakeLine(const QJsonObject& object)
{
    const GBuffer text = QJsonDocument(object).toJson(QJsonDocument::Compact);
    return GetCheck(text) + ' ' + text + '\n';
}

// Numbers are texts: JSON's own hold 53 bits.
QString FromNumber(uint64_t number)
{
    return QString::number(number);
}

bool ToNumber(const QJsonObject& object, const QString& key, uint64_t* number)
{
    bool isNumber = false;
    *number = object.value(key).toString().toULongLong(&isNumber);
    return isNumber && object.value(key).toString() == FromNumber(*number);
}

// A name that stays in the inbox.
bool IsPlainName(const QString& name)
{
    return !name.isEmpty() && name != QLatin1String(".") && name != QLatin1String("..") &&
           std::none_of(name.cbegin(), name.cend(), [](QChar character) {
               return character == QLatin1Char('/') || character == QLatin1Char('\\') || character.isNull();
           });
}

bool TakeJob(const QJsonObject& object, JobJournalContent* content)
{
    InboxJob job;
    uint64_t sender = 0;
    if (!ToNumber(object, cJob, &job.number) || !ToNumber(object, cQueue, &job.queue) ||
        !ToNumber(object, cPosition, &job.position) || !ToNumber(object, cSender, &sender) ||
        !object.value(cPayload).isString())
        return false;
    job.sender = static_cast<uint32_t>(sender);
    job.payload = GBuffer::fromBase64(object.value(cPayload).toString().toLatin1());
    if (job.number <= content->lastNumber || content->Knows(job.queue, job.position))
        return false;
    content->Add(job);
    return true;
}

bool TakeReady(const QJsonObject& object, JobJournalContent* content)
{
    uint64_t number = 0;
    const QString name = object.value(cName).toString();
    const auto job = ToNumber(object, cReady, &number) ? content->jobs.find(number) : content->jobs.end();
    const QJsonArray leftOut = object.value(cLeftOut).toArray();
    if (job == content->jobs.end() || !IsPlainName(name))
        return false;
    job->second.name = name;
    job->second.leftOut.clear();
    for (const QJsonValue& path : leftOut)
        job->second.leftOut.append(path.toString());
    return true;
}

bool TakeEnd(const QJsonObject& object, JobJournalContent* content)
{
    uint64_t queue = 0;
    uint64_t end = 0;
    if (!ToNumber(object, cQueue, &queue) || !ToNumber(object, cEnd, &end))
        return false;
    content->SetEnd(queue, end);
    return true;
}

bool TakeObject(const QJsonObject& object, JobJournalContent* content)
{
    uint64_t number = 0;
    if (object.contains(cKeeper))
        return ToNumber(object, cKeeper, &content->keeper);
    if (object.contains(cJob))
        return TakeJob(object, content);
    if (object.contains(cReady))
        return TakeReady(object, content);
    if (object.contains(cDone))
        return ToNumber(object, cDone, &number) && content->jobs.erase(number) == 1;
    return object.contains(cEnd) && TakeEnd(object, content);
}

bool TakeLine(const GBuffer& line, JobJournalContent* content)
{
    const GBuffer text = line.mid(cCheckDigits + 1);
    return line.size() > cCheckDigits && line.at(cCheckDigits) == ' ' &&
           line.left(cCheckDigits) == GetCheck(text) &&
           TakeObject(QJsonDocument::fromJson(text).object(), content);
}
}  // namespace

QString InboxJob::GetID() const
{
    return QStringLiteral("%1-%2").arg(queue, 16, 16, QLatin1Char('0')).arg(position, 0, 16);
}

JobJournalContent JobJournalContent::Read(const GBuffer& text)
{
    JobJournalContent content;
    for (int at = 0; at < text.size();) {
        const int end = text.indexOf('\n', at);
        // A write that was not finished: what it was to say was promised to nobody.
        if (end < 0)
            break;
        if (!TakeLine(text.mid(at, end - at), &content))
            content.isDamaged = true;
        at = end + 1;
    }
    content.isDamaged = content.isDamaged || (content.keeper == 0 && text.contains('\n'));
    return content;
}

GBuffer JobJournalContent::Write() const
{
    GBuffer text = JobJournalLine::Keeper(keeper);
    for (const auto& job : jobs) {
        text += JobJournalLine::Job(job.second);
        if (!job.second.name.isEmpty())
            text += JobJournalLine::Ready(job.first, job.second.name, job.second.leftOut);
    }
    for (const auto& end : ends)
        text += JobJournalLine::End(end.first, end.second);
    return text;
}

bool JobJournalContent::Knows(uint64_t queue, uint64_t position) const
{
    return std::any_of(ends.cbegin(), ends.cend(),
                       [&](const auto& end) { return end.first == queue && position < end.second; });
}

void JobJournalContent::Add(const InboxJob& job)
{
    jobs[job.number] = job;
    lastNumber = std::max(lastNumber, job.number);
    SetEnd(job.queue, job.position + 1);
}

void JobJournalContent::SetEnd(uint64_t queue, uint64_t end)
{
    const auto known =
        std::find_if(ends.begin(), ends.end(), [&](const auto& one) { return one.first == queue; });
    if (known != ends.end()) {
        end = std::max(end, known->second);
        ends.erase(known);
    }
    ends.emplace_back(queue, end);
    if (ends.size() > cMostEnds)
        ends.erase(ends.begin());
}

GBuffer JobJournalLine::Keeper(uint64_t keeper)
{
    return MakeLine({{cKeeper, FromNumber(keeper)}});
}

GBuffer JobJournalLine::Job(const InboxJob& job)
{
    return MakeLine({{cJob, FromNumber(job.number)},
                     {cQueue, FromNumber(job.queue)},
                     {cPosition, FromNumber(job.position)},
                     {cSender, FromNumber(job.sender)},
                     {cPayload, QString::fromLatin1(job.payload.toBase64())}});
}

GBuffer JobJournalLine::Ready(uint64_t number, const GString& name, const QStringList& leftOut)
{
    QJsonObject line = {{cReady, FromNumber(number)}, {cName, name}};
    if (!leftOut.isEmpty())
        line.insert(cLeftOut, QJsonArray::fromStringList(leftOut));
    return MakeLine(line);
}

GBuffer JobJournalLine::Done(uint64_t number)
{
    return MakeLine({{cDone, FromNumber(number)}});
}

GBuffer JobJournalLine::End(uint64_t queue, uint64_t end)
{
    return MakeLine({{cQueue, FromNumber(queue)}, {cEnd, FromNumber(end)}});
}
