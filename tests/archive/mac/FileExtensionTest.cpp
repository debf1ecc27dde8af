#include "archive/mac/AppleDouble.h"
#include "archive/mac/FileExtensionManager.h"
#include "archive/mac/PcExchange.h"

#include "MacFixture.h"

#include <QSet>

using Morvane::FileExtensionManager;
using Morvane::PcExchange;
using Morvane::PcExchangeRecord;

class FileExtensionTest : public MacTest
{
protected:
    ~FileExtensionTest() override { PcExchange::release(); }

    QString Table(const QByteArray& bytes) const { return Write("table.xml", bytes); }
};

static const char* const cRecords =
    "<t><Record Type=\"TEXT\" Creator=\"????\" PCExtension=\"first\"/>"
    "<Record Type=\"TEXT\" Creator=\"MSWD\" PCExtension=\"doc\" Program=\"W\"/>"
    "<Record Type=\"TEXT\" Creator=\"????\" PCExtension=\"last\"/>"
    "<Record Type=\"TEXT\" Creator=\"MSWD\" PCExtension=\"second\"/>"
    "<group><Record Type=\"DEEP\" Creator=\"????\" PCExtension=\"deep\"/></group>"
    "<Record Type=\"PDF \" Creator=\"CARO\" PCExtension=\"pdf\"/></t>";

TEST_F(FileExtensionTest, ExactRecordGoesBeforeTheWildcardWhereverItStands)
{
    const PcExchange table(Table(cRecords));
    EXPECT_EQ(table.getAllEntries().size(), 5U);
    const char* const cases[][3] = {{"TEXT", "MSWD", "doc"},
                                    {"TEXT", "ttxt", "last"},
                                    {"PDF ", "CARO", "pdf"},
                                    {"PDF ", "prvw", ""},
                                    {"DEEP", "x", ""}};
    for (const auto& [type, creator, expected] : cases) {
        QString extension;
        EXPECT_EQ(table.findExtension(QLatin1String(type), QLatin1String(creator), &extension),
                  *expected != '\0');
        EXPECT_EQ(extension, QLatin1String(expected)) << type << creator;
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

TEST_F(FileExtensionTest, FileIsWhatItsNameOrItsMacTypeSays)
{
    const QString file = Write("Report", "x");
    EXPECT_EQ(FileExtensionManager::getExtension(file), QString());
    EXPECT_EQ(TakeErrors(),
              "Morvane::FileExtensionManager::getExtension|Mac file type correspondence table in not "
              "initialized; cannot find extension for the file: " +
                  file.toStdString());
    EXPECT_TRUE(PcExchange::createPcExchange(Table(cRecords)));
    EXPECT_EQ(FileExtensionManager::getExtension(file), QString());
    Write("._Report", MakeAppleDouble("PDF CARO"));
    EXPECT_EQ(FileExtensionManager::getExtension(file), "pdf"_q);
    EXPECT_EQ(FileExtensionManager::getExtension(At("._Report")), "pdf"_q);
    EXPECT_TRUE(FileExtensionManager::isType(file, "PDF"_q));
    EXPECT_FALSE(FileExtensionManager::isType(file, "doc"_q));
    EXPECT_TRUE(FileExtensionManager::isType("a.b.Doc"_q, "doc"_q));
    EXPECT_EQ(TakeErrors(), "");

    for (const auto& [name, adjusted] : {std::pair("a", "a.pdf"), {"a.PDF", "a.PDF"}, {"a.b", "a.b.pdf"}})
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
