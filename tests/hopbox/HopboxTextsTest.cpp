#include "hopbox/HopboxJobTicket.h"
#include "hopbox/HopboxRegistryEntry.h"

#include <QDir>

#include <gtest/gtest.h>

// Text with everything that the escapes, the encodings and careless readers stumble over.
static const GString cOddText =
    QStringLiteral(" \"Gr\u00F6\u00DFe\" \\n\t'#ENDDICT' \u65E5\u672C \U0001F4E6 \u0080\u00A5n ");

static GPathName GetPath(const char* relative)
{
    return GPathName(QDir(QDir::tempPath()).absoluteFilePath(QString::fromUtf8(relative)));
}

static HopboxRecord MakeRecord()
{
    HopboxRecord record;
    record.actorName = cOddText;
    record.entry.applicationPath = GetPath("Gr\u00F6\u00DFe/\u65E5.exe");
    record.entry.contextFilePath = GetPath("a 'b'/c.zip");
    record.entry.pdfSettings = QStringLiteral("Press");
    record.entry.hopboxName = cOddText + cOddText;
    record.entry.hopboxIconPath = GetPath("i.png");
    record.entry.isPlugin = true;
    return record;
}

TEST(HopboxRecord, TextHasTheNineValuesInTheirOrderAndComesBackEqual)
{
    const HopboxRecord record = MakeRecord();
    const QStringList lines = record.ToText().split(QStringLiteral("\r\n"));
    QStringList keys;
    for (const GString& line : lines)
        keys.append(line.section(QLatin1Char('"'), 1, 1));
    EXPECT_EQ(
        keys.join(QLatin1Char(' ')).trimmed(),
        QStringLiteral("ActorName ApplicationPath ContextFilePath PDFSettings HopboxName HopboxIconPath "
                       "IsVirtualPrinter IsPlugin IsActive"));
    EXPECT_EQ(lines.first(), QStringLiteral("#BEGINDICT"));
    EXPECT_EQ(lines.at(4), QStringLiteral("\"PDFSettings\" \"Press\""));
    EXPECT_EQ(lines.at(7), QStringLiteral("\"IsVirtualPrinter\" \"false\""));
    EXPECT_EQ(lines.mid(10), QStringList({QStringLiteral("#ENDDICT"), QString()}));

    HopboxRecord read;
    read.entry.isActive = true;
    ASSERT_TRUE(read.FromText(record.ToText()));
    EXPECT_EQ(read.actorName, record.actorName);
    EXPECT_EQ(read.entry, record.entry);
}

TEST(HopboxRecord, WhatIsReadFromForeignTexts)
{
    const struct
    {
        const char* text;
        bool isRead, isPlugin;
        const char *actorName, *pdfSettings;
    } cases[] = {
        {"#BEGINDICT\n#ENDDICT", true, false, "", ""},
        {"#BEGINDICT\n\"IsPlugin\" \"true\"\n\"X\" \"y\"\n\"ActorName\" \"a\" rest\n#ENDPREFS", true, true,
         "a", ""},
        {"#BEGINDICT\n\"IsPlugin\" \"True\"\n\"PDFSettings\" \"a\"\n\"PDFSettings\" \"b\"\n#ENDDICT", true,
         false, "", "b"},
        {"#BEGINDICT\n\"IsPlugin\" \"1\"\n#ENDDICT", true, false, "", ""},
        {"", false, false, nullptr, nullptr},
        {"#BEGINDICT\n\"ActorName\" \"a\"\n", false, false, nullptr, nullptr},
        {"#BEGINDICT\n\"ActorName\"\n#ENDDICT", false, false, nullptr, nullptr},
        {"#BEGINTABLE\n\"ActorName\"\n#ENDTABLE", false, false, nullptr, nullptr},
        // A path with a NUL, which no file can have.
        {"#BEGINDICT\n\"ActorName\" \"a\"\n\"HopboxIconPath\" \"/a?b\"\n#ENDDICT", false, false, nullptr,
         nullptr},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.text);
        HopboxRecord record = MakeRecord();
        GString text = GString::fromUtf8(test.text);
        text.replace(QStringLiteral("/a?b"), QStringLiteral("/a") + QChar(0) + QStringLiteral("b"));
        ASSERT_EQ(record.FromText(text), test.isRead);
        if (!test.isRead) {
            EXPECT_EQ(record.entry, MakeRecord().entry);
            continue;
        }
        EXPECT_EQ(record.actorName, GString::fromUtf8(test.actorName));
        EXPECT_EQ(record.entry.isPlugin, test.isPlugin);
        EXPECT_EQ(record.entry.pdfSettings, GString::fromUtf8(test.pdfSettings));
        EXPECT_TRUE(record.entry.applicationPath.IsEmpty());
    }
}

static HopboxJobTicket MakeTicket()
{
    HopboxJobTicket ticket;
    ticket.userName = QStringLiteral("j\u00F6rg");
    ticket.jobPath = QStringLiteral("C:\\Jobs\\\u65E5\u672C \"1\".pdf");
    ticket.printerName = cOddText;
    ticket.portName = QStringLiteral("10987");
    ticket.copyCount = 1;
    return ticket;
}

TEST(HopboxJobTicket, TextIsWhatTheHopboxesReadAndComesBackEqual)
{
    HopboxJobTicket ticket = MakeTicket();
    ticket.printerName = QStringLiteral("Press");
    EXPECT_EQ(ticket.ToText(), QStringLiteral("#BEGINDICT\r\n\"UserName\" \"j\u00F6rg\"\r\n"
                                              "\"JobPath\" \"C:\\\\Jobs\\\\\u65E5\u672C \\\"1\\\".pdf\"\r\n"
                                              "\"PrinterName\" \"Press\"\r\n\"PortName\" \"10987\"\r\n"
                                              "\"CopyCount\" \"1\"\r\n\"PrinterID\" \"\"\r\n#ENDDICT\r\n"));
    ticket = MakeTicket();
    HopboxJobTicket read;
    read.printerID = QStringLiteral("gone");
    ASSERT_TRUE(read.FromText(GString::fromUtf8(ticket.ToText().toUtf8())));
    EXPECT_EQ(read.jobPath, ticket.jobPath);
    EXPECT_EQ(read.printerName, ticket.printerName);
    EXPECT_EQ(read.ToText(), ticket.ToText());
}

TEST(HopboxJobTicket, AbsentValuesStayAndDamageChangesNothing)
{
    HopboxJobTicket ticket = MakeTicket();
    EXPECT_FALSE(ticket.FromText(QStringLiteral("#BEGINDICT\n\"UserName\" \"x\"\n\"JobPath\"")));
    EXPECT_EQ(ticket.ToText(), MakeTicket().ToText());
    EXPECT_TRUE(ticket.FromText(QStringLiteral("#BEGINDICT\n\"CopyCount\" \"3\"\n#ENDDICT")));
    EXPECT_EQ(ticket.copyCount, 3);
    EXPECT_EQ(ticket.userName, MakeTicket().userName);
    for (const char* count : {"many", "", "4294967297", "1.5"}) {
        EXPECT_TRUE(ticket.FromText(
            QStringLiteral("#BEGINDICT\n\"CopyCount\" \"%1\"\n#ENDDICT").arg(QLatin1String(count))));
        EXPECT_FALSE(ticket.IsValid()) << count;
    }
}

TEST(HopboxJobTicket, ValidityAsksForAllButThePrinterIdentifier)
{
    const struct
    {
        void (*spoil)(HopboxJobTicket& ticket);
        bool isValid;
    } cases[] = {
        {[](HopboxJobTicket&) {}, true},
        {[](HopboxJobTicket& ticket) { ticket.printerID = QStringLiteral("1"); }, true},
        {[](HopboxJobTicket& ticket) { ticket.userName.clear(); }, false},
        {[](HopboxJobTicket& ticket) { ticket.jobPath.clear(); }, false},
        {[](HopboxJobTicket& ticket) { ticket.printerName.clear(); }, false},
        {[](HopboxJobTicket& ticket) { ticket.portName.clear(); }, false},
        {[](HopboxJobTicket& ticket) { ticket.copyCount = 0; }, false},
        {[](HopboxJobTicket& ticket) { ticket.copyCount = -1; }, false},
    };
    for (const auto& test : cases) {
        HopboxJobTicket ticket = MakeTicket();
        test.spoil(ticket);
        EXPECT_EQ(ticket.IsValid(), test.isValid) << ticket.ToText().toStdString();
    }
}
