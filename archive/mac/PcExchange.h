#pragma once

#include <QString>

#include <memory>
#include <vector>

class QIODevice;

namespace Morvane
{
// One line of the correspondence table.
struct PcExchangeRecord
{
    QString pcExtension;  // without the dot
    QString macType;
    QString macCreator;  // "????" stands for every creator
    QString programName;
};

// The correspondence of Mac types and creators with PC extensions: one table for the process, made once from
// an XML file whose root holds elements "Record" with the attributes "Type", "Creator", "PCExtension" and
// "Program". A table never changes, so that it may be asked from any thread. Nothing throws; failures go to
// the process-wide trace.
class PcExchange
{
public:
    // Makes the process's table. False when the path does not exist or a table is there already, which stays.
    // A file that can't be read as such a table (a document type declaration is refused) makes an empty one.
    [[nodiscard]] static bool createPcExchange(const QString& path);

    // The table, or none before it was made or after `release`. Whoever holds the result may go on asking it.
    static std::shared_ptr<const PcExchange> instance();

    // Lets go of the table, so that another can be made.
    static void release();

    // Reads a table for whoever needs one of his own.
    explicit PcExchange(const QString& path);

    // The same from a device that is open for reading.
    explicit PcExchange(QIODevice* file);

    // The extension for a type and creator: that of the first record of both; else of the last record of the
    // type whose creator is "????". False, and `extension` empty, when there is none.
    [[nodiscard]] bool findExtension(const QString& type, const QString& creator, QString* extension) const;

    // Type and creator of the first record of an extension, which is compared without regard to case. False,
    // and both empty, when there is none.
    [[nodiscard]] bool findFileTypeAndCreator(const QString& extension, QString* type,
                                              QString* creator) const;

    // Every record in the order of the file.
    const std::vector<PcExchangeRecord>& getAllEntries() const { return mRecords; }

private:
    void load(QIODevice* file);
    [[nodiscard]] bool readRecords(QIODevice* file);

    std::vector<PcExchangeRecord> mRecords;
};
}  // namespace Morvane
