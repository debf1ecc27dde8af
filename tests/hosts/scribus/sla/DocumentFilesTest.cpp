#include "hosts/scribus/sla/SlaContent.h"
#include "hosts/scribus/sla/SlaFile.h"
#include "hosts/scribus/sla/SlaLinks.h"
#include "tests/support/Test.h"

static QStringList GetNumbers(const QByteArray& sections, int pageCount)
{
    DocumentInfo info;
    info.pages.resize(pageCount);
    SlaContent::Read("<SCRIBUSUTF8NEW>" + sections + "</SCRIBUSUTF8NEW>", "/"_q, info);
    QStringList numbers;
    for (const DocumentPage& page : info.pages)
        numbers.append(page.number);
    return numbers;
}

TEST(DocumentFilesTest, PagesBearTheNumbersOfTheirSections)
{
    const QByteArray roman =
        "<Section From='0' To='3' Type='Type_i_ii_iii' Start='1' Active='1' Reversed='0'/>";
    const QByteArray plain = "<Section From='4' To='9' Type='Type_1_2_3' Start='1' Active='1' Reversed='0'/>";
    EXPECT_EQ(GetNumbers(roman + plain, 6), "i|ii|iii|iv|1|2"_list);
    EXPECT_EQ(GetNumbers("", 2), "1|2"_list);
    EXPECT_EQ(
        GetNumbers("<Section From='-5' To='1e99' Type='Type_A_B_C' Start='26' Active='1' Reversed='1'/>", 2),
        "AA|Z"_list);
    EXPECT_EQ(GetNumbers("<Section From='0' To='1' Type='Type_1_2_3' Start='7' Active='0'/>", 2), "1|2"_list);
}

TEST(DocumentFilesTest, ARangeNamesPagesByTheirNumbers)
{
    DocumentInfo info;
    for (const QString& number : "i|ii|1|2|3"_list)
        info.pages.append({number, PageSide::Single, 1, 1});
    using Pages = QVector<int>;
    Pages pages;
    const auto find = [&](const QString& range) {
        EXPECT_EQ(info.FindPages(range, pages).GetReason(), QString());
        return pages;
    };
    EXPECT_EQ(find("1-3,ii, 1"_q), Pages({2, 3, 4, 1, 2}));
    EXPECT_EQ(find("ii-2"_q), Pages({1, 2, 3}));
    EXPECT_EQ(find("4,5"_q), Pages({3, 4})) << "no page bears them: they are places";
    const std::pair<const char*, const char*> wrong[] = {
        {"", "The document has no page \"\"; it has 5 pages."},
        {"1-6", "The document has no page \"6\"; it has 5 pages."},
        {"1,,2", "The document has no page \"\"; it has 5 pages."},
        {"1-2-3", "The document has no page \"2-3\"; it has 5 pages."},
        {"x", "The document has no page \"x\"; it has 5 pages."},
        {"1, 3-1", "The page range \"3-1\" runs backwards."},
    };
    for (const auto& [typed, reason] : wrong) {
        EXPECT_EQ(info.FindPages(QLatin1String(typed), pages).GetReason().toStdString(), reason);
        EXPECT_EQ(pages, Pages()) << typed;
    }
}

TEST(DocumentFilesTest, OnlyLinksAreRewritten)
{
    const QByteArray before =
        "<?xml version=\"1.0\"?>\r\n<SCRIBUSUTF8 a='1'>\n<!-- <X PFILE=\"no.png\"> --><![CDATA[<X "
        "PFILE=\"no\">]]>"
        "<PAGEOBJECT PFILE2 = 'b&amp;c.png'  PFILE=\"a b.png\" CH=\"&#x5;\"/>"
        "<O PFILE=\"../x&quot;.png\"  PFILE2=\"\"></O><O PFILE=\"data\" isInlineImage=\"1\"/>"
        "<O PFILE=\"rendered.png\" PTYPE=\"9\"/></SCRIBUSUTF8>\n";
    QStringList links;
    const QByteArray after = SlaLinks::RewriteLinks(before, [&](const QString& link) {
        links.append(link);
        return link == "a b.png"_q ? link : "<\"'&>"_q;
    });
    EXPECT_EQ(links, "a b.png|b&c.png|../x\".png"_list);
    QByteArray expected = before;
    expected.replace("b&amp;c.png", "&lt;&quot;&apos;&amp;&gt;")
        .replace("../x&quot;.png", "&lt;&quot;&apos;&amp;&gt;");
    EXPECT_EQ(after.toStdString(), expected.toStdString());
}

TEST(DocumentFilesTest, DocumentsAreReadWhetherPackedOrNot)
{
    const Sandbox sandbox;
    const QString path = sandbox.GetPath("a.sla.gz"_q);
    const QByteArray text =
        "<SCRIBUSUTF8NEW Version=\"1.5.8\">" + QByteArray(300000, ' ') + "</SCRIBUSUTF8NEW>";
    QByteArray read;
    bool isPacked = false;
    for (const bool packs : {true, false}) {
        ASSERT_TRUE(SlaFile::Write(path, text, packs).HasSucceeded());
        ASSERT_TRUE(SlaFile::Read(path, read, isPacked).HasSucceeded());
        EXPECT_EQ(isPacked, packs);
        EXPECT_EQ(read, text);
    }
    ASSERT_TRUE(SlaFile::Write(path, text, true).HasSucceeded());
    const QByteArray packed = ReadFile(path);
    ASSERT_LT(packed.size(), 1000);
    ASSERT_TRUE(SlaFile::Write(path, QByteArray(SlaFile::cMostBytes + 1000, ' '), true).HasSucceeded());
    const QByteArray bomb = ReadFile(path);
    for (const QByteArray& bad : {packed.left(packed.size() / 2), QByteArray("\x1f\x8b garbage"), bomb,
                                  QByteArray("<html></html>"), QByteArray("<SCRIBUS"), QByteArray()}) {
        WriteFile(path, bad);
        EXPECT_FALSE(SlaFile::Read(path, read, isPacked).HasSucceeded());
    }
}
TEST(DocumentFilesTest, TheFirstBytesTellADocument)
{
    Sandbox sandbox;
    // reason: behind the path; null for a document
    const std::pair<QByteArray, const char*> cases[] = {
        {"\xEF\xBB\xBF<?xml version=\"1.0\"?>\n<!-- <x> --><SCRIBUSUTF8NEW a=\"" + QByteArray(200000, 'x'),
         nullptr},
        {"<SCRIBUS>", nullptr},
        {"PK\x03\x04", "is no Scribus document."},
        {"", "is no Scribus document."},
        {"<svg><SCRIBUS></svg>", "is no Scribus document."},
        {QByteArray("\x1f\x8b\x08 nothing packed"), "is no Scribus document."},
    };
    const QString path = sandbox.GetPath("a.sla"_q);
    for (const auto& [content, reason] : cases) {
        WriteFile(path, content);
        const GResult check = SlaFile::CheckBeginning(path);
        EXPECT_EQ(check.HasSucceeded(), reason == nullptr) << content.left(40).constData();
        EXPECT_TRUE(check.GetReason().endsWith(QLatin1String(reason))) << check.GetReason().toStdString();
    }
    const QByteArray text = "<SCRIBUS>" + QByteArray(500000, 'x');
    ASSERT_TRUE(SlaFile::Write(path, text, true).HasSucceeded());
    EXPECT_EQ(SlaFile::CheckBeginning(path).GetReason(), QString());
    EXPECT_EQ(SlaFile::CheckBeginning(sandbox.GetPath("gone"_q)).GetReason(),
              "\"%1\" can't be opened: No such file or directory."_q.arg(sandbox.GetPath("gone"_q)));
}
