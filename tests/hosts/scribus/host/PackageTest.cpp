#include "EngineFixture.h"

#include <QImage>
#include <QProcess>

namespace
{
class PackageTest : public EngineFixture
{
protected:
    // Moves what was made to another place, and takes away the originals.
    QString MoveAway(const QString& folder, const QStringList& originals)
    {
        for (const QString& original : originals)
            EXPECT_TRUE(QDir(mSandbox.GetPath(original)).removeRecursively());
        EXPECT_TRUE(QDir().rename(folder, mSandbox.GetPath("moved"_q)));
        return mSandbox.GetPath("moved/"_q);
    }

    // The links of a document, by their paths in a folder; with " MISSING" where they lead nowhere.
    QStringList GetLinks(const QString& path, const QString& folder)
    {
        Open(path);
        QStringList links;
        for (const DocumentLink& link : mHost->GetActiveDocument()->GetInfo()->links)
            links.append(QDir(folder).relativeFilePath(link.path) +
                         (link.isMissing ? " MISSING"_q : QString()));
        return links;
    }
};

TEST_F(PackageTest, APackageOpensElsewhereWithoutItsOriginals)
{
    MakeImage("left/\u00e4 & b #1%.png"_q, 50, 50);
    MakeImage("right/\u00e4 & b #1%.png"_q, 60, 60);
    const QString absolute = mSandbox.GetPath("right/\u00e4 & b #1%.png"_q);
    const QString frames = MakeImageFrame("../left/\u00e4 & b #1%.png"_q) + MakeImageFrame(absolute) +
                           MakeImageFrame("../right/../right/\u00e4 & b #1%.png"_q) +
                           MakeImageFrame("../left/gone.png"_q);
    Open(MakeDocument("documents/a document.sla"_q, 3, frames + MakeText("DejaVu Sans Book"_q)));
    const QByteArray before = ReadFile(mSandbox.GetPath("documents/a document.sla"_q));
    const QString folder = GetOutput("a document Folder"_q);
    ASSERT_EQ(PackageDocument(folder), cSuccess) << mHost->GetLastFailure().toStdString();
    EXPECT_EQ(PackageDocument(folder), cFailure) << "a package went into one that is there";
    EXPECT_EQ(ReadFile(mSandbox.GetPath("documents/a document.sla"_q)), before);

    const QString report = QString::fromUtf8(ReadFile(folder + "/Package Report.txt"_q));
    for (const QString& line :
         "Pages: 3|  1: 400 x 300 pt|  DejaVu Sans Book - fonts/DejaVuSans.ttf|Links: 3|"
         "/left/gone.png - MISSING|Colours: |  Black|Title: A title"_list)
        EXPECT_TRUE(report.contains(line)) << line.toStdString() << " in\n" << report.toStdString();
    const QString moved = MoveAway(folder, "left|right|documents"_list);
    QStringList links = GetLinks(moved + "a document.sla"_q, moved);
    links.sort();
    EXPECT_EQ(links, "../left/gone.png MISSING|images/\u00e4 & b #1%-2.png|images/\u00e4 & b #1%.png"_list);
    EXPECT_EQ(mHost->GetActiveDocument()->GetInfo()->pages.size(), 3);
    EXPECT_EQ(QImage(moved + "images/\u00e4 & b #1%.png"_q).width() +
                  QImage(moved + "images/\u00e4 & b #1%-2.png"_q).width(),
              110);
}

// A large file is copied in one go: the user may have pressed Cancel since the last look.
TEST_F(PackageTest, APackageThatIsCancelledWhileItsLastFileIsWrittenGoes)
{
    struct Observer final : ICancelObserver
    {
        void OnCommandCancelled() override { ++count; }
        int count = 0;
    } observer;
    mHost->SetCancelObserver(&observer);
    Open(MakeDocument("documents/a.sla"_q, 1));
    const QString folder = GetOutput("a Folder"_q);
    mFrontend.onWait = [&] { return QFileInfo::exists(folder + "/a.sla"_q); };
    EXPECT_EQ(PackageDocument(folder), cFailure);
    EXPECT_FALSE(QFileInfo::exists(folder));
    EXPECT_EQ(observer.count, 1);
    mFrontend.onWait = nullptr;
    EXPECT_EQ(PackageDocument(folder), cSuccess) << mHost->GetLastFailure().toStdString();
    EXPECT_EQ(observer.count, 1);
    mHost->SetCancelObserver(nullptr);
}

TEST_F(PackageTest, ThePackagedFontsServeWhereTheSystemHasNone)
{
    // A font that no system has: another one under a name of its own.
    QByteArray font = ReadFile("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"_q);
    font.replace("DejaVu", "DejaXu").replace(QByteArray("D\0e\0j\0a\0V", 9), QByteArray("D\0e\0j\0a\0X", 9));
    WriteFile(mSandbox.GetPath("user fonts/own.ttf"_q), font);
    const QString path = MakeDocument("documents/a.sla"_q, 1, MakeText("DejaXu Sans Book"_q));
    ScribusSetup setup = GetSetup();
    setup.fontFolders.append(mSandbox.GetPath("user fonts"_q));
    RestartHost(setup);
    Open(path);
    const QString folder = GetOutput("a Folder"_q);
    ASSERT_EQ(PackageDocument(folder), cSuccess) << mHost->GetLastFailure().toStdString();
    RestartHost(GetSetup());
    Open(path);
    EXPECT_EQ(mHost->GetActiveDocument()->GetInfo()->GetMissingFonts(), "DejaXu Sans Book"_list);
    EXPECT_EQ(Export(GetOutput("a.pdf"_q)), cFailure);
    Open(MoveAway(folder, "documents|user fonts"_list) + "a.sla"_q);
    EXPECT_EQ(mHost->GetActiveDocument()->GetInfo()->GetMissingFonts(), QStringList());
    for (const char* settings : {"", cForX})
        EXPECT_EQ(Export(GetOutput("a.pdf"_q), settings), cSuccess) << mHost->GetLastFailure().toStdString();
}

class BookTest : public PackageTest
{
protected:
    // Opens a book of the documents, by their names in the folder "book".
    void OpenBook(const QStringList& documents)
    {
        const ScribusHost::BookPtr book = mHost->NewBook(mSandbox.GetPath("book/a book.slabook"_q));
        QStringList paths;
        for (const QString& document : documents)
            paths.append(mSandbox.GetPath("book/"_q + document));
        book->SetDocuments(paths);
    }

    // The widths of the pages of a PDF, which tell the documents apart; 13 more than theirs, as they have
    // bleed.
    QStringList GetPageWidths(const QString& path)
    {
        QProcess process;
        process.start("pdfinfo"_q, {"-l"_q, "99"_q, path});
        process.waitForFinished();
        QStringList widths;
        for (const QString& line :
             QString::fromUtf8(process.readAllStandardOutput()).split(QLatin1Char('\n'))) {
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
    ASSERT_EQ(ExportBook(output), cSuccess) << mHost->GetLastFailure().toStdString();
    EXPECT_EQ(GetPageWidths(output), "313|413|213|213|313"_list);
    EXPECT_EQ(mFrontend.steps, 5);
    MakeDocument("book/one.sla"_q, 1, QString(), 100);
    ASSERT_EQ(ExportBook(output, cForX), cSuccess) << mHost->GetLastFailure().toStdString();
    EXPECT_EQ(GetPageWidths(output), "313|113|213|213|313"_list);
    EXPECT_TRUE(ReadFile(output).contains("/GTS_PDFX"));

    ASSERT_TRUE(QFile::remove(output));
    OpenBook("one.sla|gone.sla|three.sla"_list);
    EXPECT_EQ(ExportBook(output), cFailure);
    EXPECT_TRUE(mHost->GetLastFailure().contains("book/gone.sla"_q));
    OpenBook({});
    EXPECT_EQ(ExportBook(output), cFailure);
    EXPECT_EQ(ListOutput(), "a book.report.json"_list);
    EXPECT_TRUE(mHost->GetDocuments().empty());
    EXPECT_TRUE(mHost->GetHiddenDocuments().empty());
}

TEST_F(BookTest, APackagedBookOpensElsewhere)
{
    MakeImage("images/picture.png"_q, 20, 20);
    MakeDocument("book/one.sla"_q, 1, MakeImageFrame("../images/picture.png"_q));
    MakeDocument("book/other/one.sla"_q, 2, MakeImageFrame("../../images/picture.png"_q));
    OpenBook("one.sla|other/one.sla|one.sla"_list);
    const QString folder = GetOutput("a book Folder"_q);
    ASSERT_EQ(PackageBook(folder), cSuccess) << mHost->GetLastFailure().toStdString();
    EXPECT_EQ(QDir(folder).entryList(QDir::Files), "a book.slabook|one-2.sla|one.sla"_list);
    const QString moved = MoveAway(folder, "book|images"_list);
    QString reason;
    const auto book = mHost->OpenBook(moved + "a book.slabook"_q, reason);
    ASSERT_NE(book, nullptr) << reason.toStdString();
    EXPECT_EQ(book->GetDocuments(),
              QStringList({moved + "one.sla"_q, moved + "one-2.sla"_q, moved + "one.sla"_q}));
    EXPECT_EQ(GetLinks(moved + "one-2.sla"_q, moved), "images/picture.png"_list);
    EXPECT_EQ(mHost->GetActiveDocument()->GetInfo()->pages.size(), 2);

    OpenBook("one.sla"_list);
    EXPECT_EQ(PackageBook(GetOutput("b Folder"_q)), cFailure);
    EXPECT_EQ(ListOutput(), QStringList());
}
}  // namespace
