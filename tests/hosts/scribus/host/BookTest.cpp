#include "EngineFixture.h"
#include "plugin/boundary/BoundaryText.h"
#include "plugin/boundary/HostTable.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRegularExpression>

class BookTest : public EngineFixture
{
protected:
    // Opens a book of the documents, by their names in the folder "book".
    ScribusHost::BookPtr OpenBook(const QStringList& documents)
    {
        const ScribusHost::BookPtr book = mHost->NewBook(mSandbox.GetPath("book/a book.slabook"_q));
        QStringList paths;
        for (const QString& document : documents)
            paths.append(mSandbox.GetPath("book/"_q + document));
        book->SetDocuments(paths);
        return book;
    }

    // A frame on the first page that shows the number of its page and has a bookmark of that text.
    static QString MakeNumberFrame(int page, const QString& text)
    {
        return QStringLiteral(
                   "<PAGEOBJECT XPOS='110' YPOS='%1' OwnPage='%2' ItemID='%3' PTYPE='4' WIDTH='200' "
                   "HEIGHT='50' FRTYPE='0' CLIPEDIT='0' PWIDTH='0' LAYER='0' BOOKMARK='1' NEXTITEM='-1' "
                   "BACKITEM='-1' path='M0 0 L200 0 L200 50 L0 50 L0 0 Z' copath='M0 0 L200 0 L200 50 L0 50 "
                   "L0 0 Z'><StoryText><DefaultStyle/><ITEXT CH='%4 '/><var name='pgno'/>"
                   "<trail/></StoryText></PAGEOBJECT>"
                   "<Bookmark Title='%4' Text='%4' Aktion='' ItemNr='1' Element='%3' First='0' Last='0' "
                   "Prev='0' Next='0' Parent='0'/>")
            .arg(30 + 340 * page)
            .arg(page)
            .arg(100 + page)
            .arg(text);
    }

    static QString MakeSection(int from, int to, const QString& type, int start)
    {
        return "<Section Number='%1' Name='s' From='%1' To='%2' Type='%3' Start='%4' Reversed='0' Active='1' "
               "FillChar='0' FieldWidth='0'/>"_q.arg(from)
                   .arg(to)
                   .arg(type)
                   .arg(start);
    }

    static QString Run(const QString& program, const QStringList& arguments)
    {
        return QString::fromUtf8(RunProgram(program, arguments));
    }

    // A PDF's bookmarks by title and page, from 1; those of a document in brackets behind its own.
    static QString DescribeOutlines(const QJsonArray& outlines)
    {
        QStringList items;
        for (const QJsonValue& item : outlines) {
            const QString own = DescribeOutlines(item["kids"_q].toArray());
            items.append("%1 %2"_q.arg(item["title"_q].toString()).arg(item["destpageposfrom1"_q].toInt()) +
                         (own.isEmpty() ? own : " ("_q + own + ")"_q));
        }
        return items.join(", "_q);
    }

    // The widths of the pages of a PDF, which tell the documents apart; 13 more than theirs, as they have
    // bleed.
    QStringList GetPageWidths(const QString& path)
    {
        QStringList widths;
        for (const QString& line : Run("pdfinfo"_q, {"-l"_q, "99"_q, path}).split(QLatin1Char('\n'))) {
            if (line.startsWith("Page "_q) && line.contains(" size: "_q))
                widths.append(line.simplified().section(QLatin1Char(' '), 3, 3));
        }
        return widths;
    }
};

TEST_F(BookTest, ABookBecomesOnePdfInItsOrder)
{
    MakeDocument("book/one.sla"_q, 1);
    MakeDocument("book/two & 2.sla"_q, 2, QString(), 200);
    MakeDocument("book/three.sla"_q, 1, QString(), 300);
    const QString output = GetOutput("a book.pdf"_q);
    OpenBook("three.sla|one.sla|two & 2.sla|three.sla"_list);
    ASSERT_EQ(ExportBook(output), cSuccess);
    EXPECT_EQ(GetPageWidths(output), "313|413|213|213|313"_list);
    EXPECT_EQ(mFrontend.steps, 5);
    MakeDocument("book/one.sla"_q, 1, QString(), 100);
    ASSERT_EQ(ExportBook(output, cForX), cSuccess);
    EXPECT_EQ(GetPageWidths(output), "313|113|213|213|313"_list);
    EXPECT_TRUE(ReadFile(output).contains("/GTS_PDFX"));

    ASSERT_TRUE(QFile::remove(output));
    mFrontend.onWait = [&] { return QFile::exists(output); };  // all of the work is done then
    EXPECT_EQ(ExportBook(output), cFailure);
    EXPECT_TRUE(mHost->GetLastFailure().contains("The user cancelled"_q));
    mFrontend.onWait = nullptr;
    OpenBook("one.sla|gone.sla|three.sla"_list);
    EXPECT_EQ(ExportBook(output), cFailure);
    EXPECT_TRUE(mHost->GetLastFailure().contains("book/gone.sla"_q));
    OpenBook({});
    EXPECT_EQ(ExportBook(output), cFailure);
    EXPECT_EQ(ListOutput(), "a book.report.json"_list);
    EXPECT_TRUE(mHost->GetDocuments().empty());
    EXPECT_TRUE(mHost->GetHiddenDocuments().empty());
}

TEST_F(BookTest, PagesAreNumberedOnUnderTheBooksTitleAndBookmarks)
{
    MakeDocument("book/one.sla"_q, 2,
                 "<Sections>"_q + MakeSection(0, 1, "Type_i_ii_iii"_q, 1) + "</Sections>"_q +
                     MakeNumberFrame(1, "First"_q));
    MakeDocument("book/two.sla"_q, 4,
                 "<Sections>"_q + MakeSection(0, 1, "Type_1_2_3"_q, 1) +
                     MakeSection(2, 2, "Type_1_2_3"_q, 3) + MakeSection(3, 3, "Type_1_2_3"_q, 50) +
                     "</Sections>"_q + MakeNumberFrame(0, "Second"_q) + MakeNumberFrame(2, "Third"_q));
    const std::tuple<bool, const char*, const char*> cases[] = {
        {true, "First ii|Second 3|Third 5|Second 51|Third 53", "i,ii,3+,50,51+,50"},
        {false, "First ii|Second 1|Third 3|Second 1|Third 3", "i,ii,1+,50,1+,50"}};
    for (const auto& [isNumberedOn, words, numbers] : cases) {
        OpenBook("one.sla|two.sla|two.sla"_list)->SetNumberedOn(isNumberedOn);
        const QString output = GetOutput("a book.pdf"_q);
        ASSERT_EQ(ExportBook(output, "/OtherNamespaces [<< /IncludeBookmarks true >>]"), cSuccess);
        EXPECT_EQ(QProcess::execute("qpdf"_q, {"--check"_q, output}), 0);
        EXPECT_EQ(Run("pdftotext"_q, {output, "-"_q}).simplified().remove(QLatin1Char('\f')),
                  QString(QLatin1String(words)).replace(QLatin1Char('|'), QLatin1Char(' ')));
        EXPECT_TRUE(Run("pdfinfo"_q, {output}).contains(QRegularExpression("Title: +a book\n"_q)));
        const QJsonObject facts =
            QJsonDocument::fromJson(RunProgram("qpdf"_q, {"--json=1"_q, "--json-key=outlines"_q,
                                                          "--json-key=pagelabels"_q, output}))
                .object();
        EXPECT_EQ(DescribeOutlines(facts["outlines"_q].toArray()),
                  "one.sla 1 (First 2), two.sla 3 (Second 3, Third 5), two.sla 7 (Second 7, Third 9)"_q);
        QStringList labels;
        for (const QJsonValue& label : facts["pagelabels"_q].toArray())
            labels.append(label["label"_q]["/P"_q].isString()
                              ? label["label"_q]["/P"_q].toString().remove("u:"_q)
                              : QString::number(label["label"_q]["/St"_q].toInt()));
        EXPECT_EQ(labels.join(QLatin1Char(',')), QString(QLatin1String(numbers)).remove(QLatin1Char('+')));
    }
}

TEST_F(BookTest, PartsForDifferentPressesAreNoBook)
{
    QStringList presses;
    for (const ColorProfile& profile : mHost->GetRunner().GetProfiles()) {
        if (profile.isCmykOutput)
            presses.append(profile.name.toHtmlEscaped());
    }
    ASSERT_GE(presses.size(), 2) << presses.join(QLatin1Char(',')).toStdString();
    const QString pdf = "<PDF Version='14' PrintP='%1' InfoString=''/>"_q;
    MakeDocument("book/one.sla"_q, 1, pdf.arg(presses[0]));
    MakeDocument("book/two.sla"_q, 1, pdf.arg(presses[1]));
    OpenBook("one.sla|two.sla"_list);
    EXPECT_EQ(ExportBook(GetOutput("a.pdf"_q), "/CheckCompliance [/PDFX3:2003]"), cFailure);
    EXPECT_TRUE(mHost->GetLastFailure().contains("\"two.sla\" can't be a part"_q));
    EXPECT_EQ(ListOutput(), QStringList());
    EXPECT_EQ(ExportBook(GetOutput("a.pdf"_q), cForX), cSuccess) << "one press for all";
    EXPECT_EQ(ExportBook(GetOutput("b.pdf"_q),
                         "/CheckCompliance [/PDFX4:2010] /PDFXOutputIntentProfile "
                         "(ISO Coated v2 300% \\(basICColor\\))"),
              cSuccess);
    EXPECT_TRUE(Run("pdfinfo"_q, {"-meta"_q, GetOutput("b.pdf"_q)}).contains(">a book</rdf:li>"_q));
}

TEST_F(BookTest, AllDocumentsAreAskedAboutInOneStart)
{
    MakeFont("book/elsewhere/own.ttf"_q);
    MakeDocument("book/one.sla"_q, 1);
    for (const char* name : {"lacks.sla", "lacks too.sla", "elsewhere/has.sla"})
        MakeDocument("book/"_q + QLatin1String(name), 1, MakeText("DejaXu Sans Book"_q));
    WriteFile(mSandbox.GetPath("book/damaged.sla"_q), "<SCRIBUSUTF8NEW><DOCUMENT");
    CountStarts();
    OpenBook("one.sla|lacks.sla|damaged.sla|lacks too.sla|gone.sla"_list);
    const auto check = [&](const char* name) {
        HostPtr<IDocument> document;
        const HostPtr<IDocumentUtils> utils = mHost->QueryDocumentUtils();
        const IDFile file{PMString(mSandbox.GetPath("book/"_q + QLatin1String(name)))};
        if (utils->OpenDocument(file, document) != cSuccess)
            return "failed: "_q + mHost->GetLastFailure();
        const HostPtr<IFontList> fonts = document->QueryFontList();
        fonts->Update();
        const QString missing = QString::number(fonts->GetMissingFontCount());
        utils->CloseDocument(*document, CloseFlags());
        return missing;
    };
    EXPECT_EQ(check("one.sla"), "0"_q);
    EXPECT_EQ(check("lacks.sla"), "1"_q);
    EXPECT_EQ(check("lacks too.sla"), "1"_q);
    EXPECT_EQ(GetStarts(), 1);
    EXPECT_EQ(mFrontend.steps, 4);
    EXPECT_EQ(mFrontend.events, "begin Check Fonts|end"_list);
    EXPECT_TRUE(check("damaged.sla").contains("\"damaged.sla\""_q));
    EXPECT_TRUE(check("gone.sla").contains("book/gone.sla"_q));

    // A font beside one document is not there for another.
    for (const char* order : {"lacks.sla|elsewhere/has.sla", "elsewhere/has.sla|lacks.sla"}) {
        CountStarts();
        OpenBook(QString(QLatin1String(order)).split(QLatin1Char('|')));
        EXPECT_EQ(check("elsewhere/has.sla"), "0"_q) << order;
        EXPECT_EQ(check("lacks.sla"), "1"_q) << order;
    }

    CountStarts();
    OpenBook("one.sla|two.sla"_list);
    MakeDocument("book/two.sla"_q, 1);
    mFrontend.onWait = [] { return true; };
    CancelCounter observer;
    mHost->SetCancelObserver(&observer);
    EXPECT_EQ(check("two.sla").left(7), "failed:"_q);
    EXPECT_EQ(observer.count, 1);
    HostTable table(*mHost);
    const Boundary::PassedText path(mSandbox.GetPath("book/two.sla"_q));
    hopbox_handle document = 0;
    EXPECT_EQ(HostTable::GetTable().open_document(&table, path, &document), HOPBOX_CANCELLED);
    mHost->SetCancelObserver(nullptr);
    MakeDocument("book/one.sla"_q, 2);
    mFrontend.onWait = [&, second = mFrontend.steps + 2] { return mFrontend.steps == second; };
    EXPECT_EQ(check("one.sla").left(7), "failed:"_q) << "it was described before the user cancelled";
    EXPECT_THROW(mHost->RunCommand("Raise"_q, 1, [](const auto&) -> GResult { throw 1; }), int);
    EXPECT_EQ(mFrontend.events.mid(mFrontend.events.size() - 2), "begin Raise|end"_list);
}

TEST_F(BookTest, APackagedBookOpensElsewhere)
{
    MakeImage("images/picture.png"_q, 20, 20);
    MakeDocument("book/one.sla"_q, 1, MakeImageFrame("../images/picture.png"_q));
    MakeDocument("book/other/one.sla"_q, 2, MakeImageFrame("../../images/picture.png"_q));
    OpenBook("one.sla|other/one.sla|one.sla"_list);
    const QString folder = GetOutput("a book Folder"_q);
    ASSERT_EQ(PackageBook(folder), cSuccess);
    EXPECT_EQ(QDir(folder).entryList(QDir::Files), "a book.slabook|one-2.sla|one.sla"_list);
    const QString moved = MoveAway(folder, "book|images"_list);
    const GResult opened = mHost->OpenBook(moved + "a book.slabook"_q);
    ASSERT_TRUE(opened.HasSucceeded()) << opened.GetReason().toStdString();
    EXPECT_EQ(mHost->GetActiveBook()->GetDocuments(),
              QStringList({moved + "one.sla"_q, moved + "one-2.sla"_q, moved + "one.sla"_q}));
    EXPECT_EQ(GetLinks(moved + "one-2.sla"_q, moved), "images/picture.png"_list);
    EXPECT_EQ(mHost->GetActiveDocument()->GetInfo()->pages.size(), 2);

    OpenBook("one.sla"_list);
    EXPECT_EQ(PackageBook(GetOutput("b Folder"_q)), cFailure);
    EXPECT_EQ(ListOutput(), QStringList());
}
