#include "archive/mac/AppleDouble.h"
#include "archive/mac/FileExtensionManager.h"
#include "archive/mac/PcExchange.h"

#include "MacFixture.h"

#include <QSet>

using Morvane::FileExtensionManager;
using Morvane::PcExchange;
using Morvane::PcExchangeRecord;

namespace
{
using Adjusted = std::pair<const char*, const char*>;

class FileExtensionTest : public MacTest
{
protected:
    ~FileExtensionTest() override { PcExchange::release(); }

    QString Table(const QByteArray& bytes) const { return Write("table.xml", bytes); }
};

const char* const cRecords =
    "<t><Record Type=\"TEXT\" Creator=\"????\" PCExtension=\"first\"/>"
    "<Record Type=\"TEXT\" Creator=\"MSWD\" PCExtension=\"doc\" Program=\"W\"/>"
    "<Record Type=\"TEXT\" Creator=\"????\" PCExtension=\"last\"/>"
    "<Record Type=\"TEXT\" Creator=\"MSWD\" PCExtension=\"second\"/>"
    "<group><Record Type=\"DEEP\" Creator=\"????\" PCExtension=\"deep\"/></group>"
    "<Record Type=\"PDF \" Creator=\"CARO\" PCExtension=\"pdf\"/></t>";
}  // namespace

TEST_F(FileExtensionTest, ExactRecordGoesBeforeTheWildcardWhereverItStands)
{
    const PcExchange table(Table(cRecords));
    EXPECT_EQ(table.getAllEntries().size(), 5U);
    struct Case
    {
        const char* type;
        const char* creator;
        const char* extension;
    };
    for (const Case& entry : {Case{"TEXT", "MSWD", "doc"}, Case{"TEXT", "ttxt", "last"},
                              Case{"PDF ", "CARO", "pdf"}, Case{"PDF ", "prvw", ""}, Case{"DEEP", "x", ""}}) {
        QString extension;
        EXPECT_EQ(table.findExtension(QLatin1String(entry.type), QLatin1String(entry.creator), &extension),
                  *entry.extension != '\0');
        EXPECT_EQ(extension, QLatin1String(entry.extension)) << entry.type << entry.creator;
    }
    QString type;
    QString creator;
    EXPECT_TRUE(table.findFileTypeAndCreator("DOC"_q, &type, &creator));
    EXPECT_EQ(type + creator, "TEXTMSWD"_q);
    EXPECT_FALSE(table.findFileTypeAndCreator("xyz"_q, &type, &creator));
}

TEST_F(FileExtensionTest, DamagedTableIsEmptyAndLogged)
{
    const QByteArray records(cRecords);
    for (const QByteArray& bytes : {QByteArray(), QByteArray("<t/>"), records.left(records.size() - 4),
                                    "\xFF\xFE" + records, "<!DOCTYPE t [<!ENTITY a \"b\">]>" + records}) {
        EXPECT_TRUE(PcExchange(Table(bytes)).getAllEntries().empty()) << bytes.constData();
        EXPECT_EQ(TakeErrors(),
                  "Morvane::PcExchange::PcExchange|Can't read mac file types / extension "
                  "correspondance table");
    }
}

TEST_F(FileExtensionTest, ProcessHasOneTable)
{
    const std::string source = "Morvane::PcExchange::createPcExchange|";
    EXPECT_FALSE(PcExchange::createPcExchange(At("missing")));
    EXPECT_EQ(PcExchange::instance(), nullptr);
    EXPECT_TRUE(PcExchange::createPcExchange(Table(cRecords)));
    const auto table = PcExchange::instance();
    EXPECT_FALSE(PcExchange::createPcExchange(Table(cRecords)));
    EXPECT_EQ(PcExchange::instance(), table);
    PcExchange::release();
    EXPECT_EQ(PcExchange::instance(), nullptr);
    EXPECT_EQ(TakeErrors(), source +
                                "Cannot initialize Mac file type correspondence table: invalid file path '" +
                                At("missing").toStdString() + "'\n" + source +
                                "Mac file type correspondence table is already initialized");
}

TEST_F(FileExtensionTest, FileIsWhatItsNameOrItsMacTypeSays)
{
    const QString file = Write("Report", "x");
    EXPECT_EQ(FileExtensionManager::getExtension(file), QString());
    EXPECT_EQ(TakeErrors(),
              "Morvane::FileExtensionManager::getExtension|Mac file type correspondence table in not "
              "initialized; cannot find extension for the file: " +
                  file.toStdString());
    PcExchange::createPcExchange(Table(cRecords));
    EXPECT_EQ(FileExtensionManager::getExtension(file), QString());
    Write("._Report", MakeAppleDouble("PDF CARO"));
    EXPECT_EQ(FileExtensionManager::getExtension(file), "pdf"_q);
    EXPECT_EQ(FileExtensionManager::getExtension(At("._Report")), "pdf"_q);
    EXPECT_TRUE(FileExtensionManager::isType(file, "PDF"_q));
    EXPECT_FALSE(FileExtensionManager::isType(file, "doc"_q));
    EXPECT_TRUE(FileExtensionManager::isType("a.b.Doc"_q, "doc"_q));
    EXPECT_EQ(TakeErrors(), "");

    Morvane::MacFileInfo info;
    EXPECT_FALSE(FileExtensionManager::getFileInfo(QString(), &info));
    EXPECT_FALSE(FileExtensionManager::isType(QString(), "pdf"_q));
    EXPECT_EQ(TakeErrors(),
              "Morvane::FileExtensionManager::getFileInfo|Cannot get file info for the empty file path\n"
              "Morvane::FileExtensionManager::isType|Cannot check file type for the empty file path");

    for (const auto& [name, adjusted] :
         {Adjusted{"a", "a.pdf"}, Adjusted{"a.PDF", "a.PDF"}, Adjusted{"a.b", "a.b.pdf"}})
        EXPECT_EQ(FileExtensionManager::adjustNameWithExtension(QLatin1String(name), "pdf"_q),
                  QLatin1String(adjusted));
}

TEST_F(FileExtensionTest, DeliveredTableIsSound)
{
    const PcExchange table(QStringLiteral(MAC_TYPE_TABLE));
    ASSERT_GT(table.getAllEntries().size(), 50U);
    QSet<QString> seen;
    for (const PcExchangeRecord& record : table.getAllEntries()) {
        EXPECT_EQ(record.macType.size(), 4) << record.macType.toStdString();
        EXPECT_EQ(record.macCreator.size(), 4) << record.macType.toStdString();
        EXPECT_FALSE(record.pcExtension.isEmpty() || record.programName.isEmpty());
        const QString key = record.macType + record.macCreator;
        EXPECT_FALSE(seen.contains(key)) << key.toStdString() << " stands twice";
        seen.insert(key);
    }
}
