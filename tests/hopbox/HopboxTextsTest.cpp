#include "hopbox/HopboxJobTicket.h"
#include "hopbox/HopboxRegistryEntry.h"

#include "tests/support/Test.h"

// Text with everything that the escapes, the encodings and careless readers stumble over.
static const GString cOddText =
    " \"Gr\u00F6\u00DFe\" \\n\t'#ENDDICT' \u65E5\u672C \U0001F4E6 \u0080\u00A5n "_q;

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
    record.entry.pdfSettings = "Press"_q;
    record.entry.hopboxName = cOddText + cOddText;
    record.entry.hopboxIconPath = GetPath("i.png");
    record.entry.isPlugin = true;
    return record;
}

TEST(HopboxRecord, TextHasTheNineValuesInTheirOrderAndComesBackEqual)
{
    const HopboxRecord record = MakeRecord();
    QStringList keys;
    for (const auto& value : record.GetValues())
        keys.append(value.first);
    EXPECT_EQ(keys.join(QLatin1Char(' ')),
              "ActorName ApplicationPath ContextFilePath PDFSettings HopboxName HopboxIconPath "
              "IsVirtualPrinter IsPlugin IsActive"_q);
    EXPECT_TRUE(record.ToText().endsWith(
        "\"IsVirtualPrinter\" \"false\"\r\n\"IsPlugin\" \"true\"\r\n\"IsActive\" \"false\"\r\n#ENDDICT\r\n"_q));

    HopboxRecord read;
    read.entry.isActive = true;
    ASSERT_TRUE(read.FromText(record.ToText()));
    EXPECT_EQ(read.actorName, record.actorName);
    EXPECT_EQ(read.entry, record.entry);
}

TEST(HopboxRecord, WhatIsReadFromForeignTexts)
{
    const std::tuple<const char*, bool, bool, const char*> cases[] = {
        {"#BEGINDICT\n#ENDDICT", true, false, ""},
        {"#BEGINDICT\n\"IsPlugin\" \"true\"\n\"X\" \"y\"\n\"PDFSettings\" \"a\" rest\n#ENDPREFS", true, true,
         "a"},
        {"#BEGINDICT\n\"IsPlugin\" \"True\"\n\"PDFSettings\" \"a\"\n\"PDFSettings\" \"b\"\n#ENDDICT", true,
         false, "b"},
        {"#BEGINDICT\n\"IsPlugin\" \"1\"\n#ENDDICT", true, false, ""},
        {"", false, false, ""},
        {"#BEGINDICT\n\"ActorName\" \"a\"\n", false, false, ""},
        {"#BEGINTABLE\n\"ActorName\"\n#ENDTABLE", false, false, ""},
        // A path with a NUL, which no file can have.
        {"#BEGINDICT\n\"ActorName\" \"a\"\n\"HopboxIconPath\" \"/a?b\"\n#ENDDICT", false, false, ""},
    };
    for (const auto& [document, isRead, isPlugin, settings] : cases) {
        SCOPED_TRACE(document);
        HopboxRecord record = MakeRecord();
        GString text = GString::fromUtf8(document);
        text.replace("/a?b"_q, "/a\0b"_q);
        ASSERT_EQ(record.FromText(text), isRead);
        HopboxOffer offer{true, "kept"_q};
        EXPECT_EQ(offer.FromText(text), isRead);
        EXPECT_EQ(offer.isPlugin, !isRead || isPlugin);
        EXPECT_EQ(offer.pdfSettings, isRead ? GString::fromUtf8(settings) : "kept"_q);
        if (!isRead) {
            EXPECT_EQ(record.entry, MakeRecord().entry);
            continue;
        }
        EXPECT_EQ(record.actorName, QString());
        EXPECT_EQ(record.entry.isPlugin, isPlugin);
        EXPECT_EQ(record.entry.pdfSettings, GString::fromUtf8(settings));
        EXPECT_TRUE(record.entry.applicationPath.IsEmpty());
    }
}

static HopboxJobTicket MakeTicket()
{
    HopboxJobTicket ticket;
    ticket.userName = "j\u00F6rg"_q;
    ticket.jobPath = "C:\\Jobs\\\u65E5\u672C \"1\".pdf"_q;
    ticket.printerName = cOddText;
    ticket.portName = "10987"_q;
    ticket.copyCount = 1;
    return ticket;
}

TEST(HopboxJobTicket, TextIsWhatTheHopboxesReadAndComesBackEqual)
{
    HopboxJobTicket ticket = MakeTicket();
    ticket.printerName = "Press"_q;
    EXPECT_EQ(ticket.ToText(),
              "#BEGINDICT\r\n\"UserName\" \"j\u00F6rg\"\r\n"
              "\"JobPath\" \"C:\\\\Jobs\\\\\u65E5\u672C \\\"1\\\".pdf\"\r\n"
              "\"PrinterName\" \"Press\"\r\n\"PortName\" \"10987\"\r\n"
              "\"CopyCount\" \"1\"\r\n\"PrinterID\" \"\"\r\n#ENDDICT\r\n"_q);
    ticket = MakeTicket();
    HopboxJobTicket read;
    read.printerID = "gone"_q;
    ASSERT_TRUE(read.FromText(GString::fromUtf8(ticket.ToText().toUtf8())));
    EXPECT_EQ(read.jobPath, ticket.jobPath);
    EXPECT_EQ(read.printerName, ticket.printerName);
    EXPECT_EQ(read.ToText(), ticket.ToText());
}

TEST(HopboxJobTicket, AbsentValuesStayAndDamageChangesNothing)
{
    HopboxJobTicket ticket = MakeTicket();
    EXPECT_FALSE(ticket.FromText("#BEGINDICT\n\"UserName\" \"x\"\n\"JobPath\""_q));
    EXPECT_EQ(ticket.ToText(), MakeTicket().ToText());
    for (const auto& [count, read] :
         {std::pair("3", 3), {"many", 0}, {"", 0}, {"4294967297", 0}, {"1.5", 0}}) {
        EXPECT_TRUE(
            ticket.FromText("#BEGINDICT\n\"CopyCount\" \"%1\"\n#ENDDICT"_q.arg(QLatin1String(count))));
        EXPECT_EQ(ticket.copyCount, read) << count;
        EXPECT_EQ(ticket.userName, MakeTicket().userName);
    }
}

TEST(HopboxJobTicket, ValidityAsksForAllButThePrinterIdentifier)
{
    for (const GString& key : "UserName|JobPath|PrinterName|PortName|CopyCount|PrinterID|Other"_list) {
        HopboxJobTicket ticket = MakeTicket();
        EXPECT_TRUE(ticket.FromText("#BEGINDICT\n\"%1\" \"\"\n#ENDDICT"_q.arg(key)));
        EXPECT_EQ(ticket.IsValid(), key == "PrinterID"_q || key == "Other"_q) << key.toStdString();
    }
}
