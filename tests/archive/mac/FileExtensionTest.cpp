#include "archive/mac/AppleDouble.h"
#include "archive/mac/FileExtensionManager.h"
#include "archive/mac/PcExchange.h"
#include "foundation/trace/GTrace.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Sandbox.h"

#include "AppleDoubleFile.h"

#include <QSet>

using Morvane::FileExtensionManager;
using Morvane::PcExchange;
using Morvane::PcExchangeRecord;

namespace
{
class FileExtensionTest : public testing::Test
{
protected:
    void SetUp() override { GTrace::SetLogger(mLog); }
    void TearDown() override
    {
        PcExchange::release();
        GTrace::SetLogger(nullptr);
    }

    QString At(const char* relative) const { return mSandbox.GetPath(QString::fromUtf8(relative)); }
    QString Table(const QByteArray& bytes) const { return WriteFile(At("table.xml"), bytes); }

    Sandbox mSandbox;
    std::shared_ptr<LogRecorder> mLog = std::make_shared<LogRecorder>();
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
    EXPECT_TRUE(table.findFileTypeAndCreator(QStringLiteral("DOC"), &type, &creator));
    EXPECT_EQ(type + creator, QStringLiteral("TEXTMSWD"));
    EXPECT_FALSE(table.findFileTypeAndCreator(QStringLiteral("xyz"), &type, &creator));
}

TEST_F(FileExtensionTest, DamagedTableIsEmptyAndLogged)
{
    const QByteArray records(cRecords);
    for (const QByteArray& bytes : {QByteArray(), QByteArray("<t/>"), records.left(records.size() - 4),
                                    "\xFF\xFE" + records, "<!DOCTYPE t [<!ENTITY a \"b\">]>" + records}) {
        EXPECT_TRUE(PcExchange(Table(bytes)).getAllEntries().empty()) << bytes.constData();
        EXPECT_EQ(mLog->TakeErrors(),
                  QStringList(QStringLiteral("Morvane::PcExchange::PcExchange|Can't read mac "
                                             "file types / extension correspondance table")));
    }
}

TEST_F(FileExtensionTest, ProcessHasOneTable)
{
    const QString source = QStringLiteral("Morvane::PcExchange::createPcExchange|");
    EXPECT_FALSE(PcExchange::createPcExchange(At("missing")));
    EXPECT_EQ(PcExchange::instance(), nullptr);
    EXPECT_TRUE(PcExchange::createPcExchange(Table(cRecords)));
    const auto table = PcExchange::instance();
    EXPECT_FALSE(PcExchange::createPcExchange(Table(cRecords)));
    EXPECT_EQ(PcExchange::instance(), table);
    PcExchange::release();
    EXPECT_EQ(PcExchange::instance(), nullptr);
    EXPECT_EQ(
        mLog->TakeErrors(),
        QStringList({source + QStringLiteral("Cannot initialize Mac file type correspondence table: invalid "
                                             "file path '%1'")
                                  .arg(At("missing")),
                     source + QStringLiteral("Mac file type correspondence table is already initialized")}));
}

TEST_F(FileExtensionTest, FileIsWhatItsNameOrItsMacTypeSays)
{
    const QString file = WriteFile(At("Report"), "x");
    EXPECT_EQ(FileExtensionManager::getExtension(file), QString());
    EXPECT_EQ(
        mLog->TakeErrors(),
        QStringList(QStringLiteral("Morvane::FileExtensionManager::getExtension|Mac file type correspondence "
                                   "table in not initialized; cannot find extension for the file: ") +
                    file));
    PcExchange::createPcExchange(Table(cRecords));
    EXPECT_EQ(FileExtensionManager::getExtension(file), QString());
    WriteFile(At("._Report"), MakeAppleDouble("PDF CARO"));
    EXPECT_EQ(FileExtensionManager::getExtension(file), QStringLiteral("pdf"));
    EXPECT_EQ(FileExtensionManager::getExtension(At("._Report")), QStringLiteral("pdf"));
    EXPECT_TRUE(FileExtensionManager::isType(file, QStringLiteral("PDF")));
    EXPECT_FALSE(FileExtensionManager::isType(file, QStringLiteral("doc")));
    EXPECT_TRUE(FileExtensionManager::isType(QStringLiteral("a.b.Doc"), QStringLiteral("doc")));
    EXPECT_TRUE(mLog->TakeErrors().isEmpty());

    Morvane::MacFileInfo info;
    EXPECT_FALSE(FileExtensionManager::getFileInfo(QString(), &info));
    EXPECT_FALSE(FileExtensionManager::isType(QString(), QStringLiteral("pdf")));
    EXPECT_EQ(mLog->TakeErrors().size(), 2);

    struct Case
    {
        const char* name;
        const char* adjusted;
    };
    for (const Case& entry : {Case{"a", "a.pdf"}, Case{"a.PDF", "a.PDF"}, Case{"a.b", "a.b.pdf"}})
        EXPECT_EQ(
            FileExtensionManager::adjustNameWithExtension(QLatin1String(entry.name), QStringLiteral("pdf")),
            QLatin1String(entry.adjusted));
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
