#include "archive/mac/PcExchange.h"

#include "foundation/core/SharedFile.h"
#include "foundation/trace/GTrace.h"

#include <QFile>
#include <QXmlStreamReader>

#include <algorithm>
#include <mutex>

namespace Morvane
{
namespace
{
const QLatin1String cAnyCreator("????");

struct Shared
{
    std::mutex mutex;
    std::shared_ptr<const PcExchange> table;
};

Shared& getShared()
{
    static Shared shared;
    return shared;
}

PcExchangeRecord getRecord(const QXmlStreamAttributes& attributes)
{
    const auto get = [&attributes](const char* name) {
        return attributes.value(QLatin1String(name)).toString();
    };
    return {get("PCExtension"), get("Type"), get("Creator"), get("Program")};
}
}  // namespace

bool PcExchange::createPcExchange(const QString& path)
{
    const QString source = QStringLiteral("Morvane::PcExchange::createPcExchange");
    Shared& shared = getShared();
    const std::lock_guard<std::mutex> guard(shared.mutex);
    if (shared.table) {
        GTrace::Error(source, QStringLiteral("Mac file type correspondence table is already initialized"));
        return false;
    }
    if (!QFile::exists(path)) {
        GTrace::Error(source,
                      QStringLiteral("Cannot initialize Mac file type correspondence table: invalid file "
                                     "path '%1'")
                          .arg(path));
        return false;
    }
    shared.table = std::make_shared<PcExchange>(path);
    return true;
}

std::shared_ptr<const PcExchange> PcExchange::instance()
{
    Shared& shared = getShared();
    const std::lock_guard<std::mutex> guard(shared.mutex);
    return shared.table;
}

void PcExchange::release()
{
    Shared& shared = getShared();
    const std::lock_guard<std::mutex> guard(shared.mutex);
    shared.table.reset();
}

PcExchange::PcExchange(const QString& path)
{
    QFile file(path);
    GString reason;
    const FileOpening opening = OpenSharedForReading(file, cLargestTextFile, reason);
    load(&file);
    if (opening == FileOpening::cRefused)
        GTrace::Error(QStringLiteral("Morvane::PcExchange::PcExchange"),
                      QStringLiteral("\"%1\": %2").arg(path, reason));
}

PcExchange::PcExchange(QIODevice* file)
{
    load(file);
}

void PcExchange::load(QIODevice* file)
{
    if (file->isReadable() && readRecords(file) && !mRecords.empty())
        return;
    mRecords.clear();
    GTrace::Error(QStringLiteral("Morvane::PcExchange::PcExchange"),
                  QStringLiteral("Can't read mac file types / extension correspondance table"));
}

bool PcExchange::readRecords(QIODevice* file)
{
    QXmlStreamReader reader(file);
    // Only children of the root: what lies deeper is somebody else's.
    int depth = 0;
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
            case QXmlStreamReader::DTD:
                return false;
            case QXmlStreamReader::StartElement:
                ++depth;
                if (depth == 2 && reader.name() == QLatin1String("Record"))
                    mRecords.push_back(getRecord(reader.attributes()));
                break;
            case QXmlStreamReader::EndElement:
                --depth;
                break;
            default:
                break;
        }
    }
    return !reader.hasError();
}

bool PcExchange::findExtension(const QString& type, const QString& creator, QString* extension) const
{
    const PcExchangeRecord* found = nullptr;
    for (const PcExchangeRecord& record : mRecords) {
        if (record.macType != type)
            continue;
        if (record.macCreator == creator) {
            found = &record;
            break;
        }
        if (record.macCreator == cAnyCreator)
            found = &record;
    }
    *extension = found != nullptr ? found->pcExtension : QString();
    return found != nullptr;
}

bool PcExchange::findFileTypeAndCreator(const QString& extension, QString* type, QString* creator) const
{
    const auto found =
        std::find_if(mRecords.cbegin(), mRecords.cend(), [&extension](const PcExchangeRecord& record) {
            return record.pcExtension.compare(extension, Qt::CaseInsensitive) == 0;
        });
    *type = found != mRecords.cend() ? found->macType : QString();
    *creator = found != mRecords.cend() ? found->macCreator : QString();
    return found != mRecords.cend();
}
}  // namespace Morvane
