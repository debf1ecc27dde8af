#include "EngineFixture.h"

#include <QImage>
#include <QProcess>

namespace
{
class PackageTest : public EngineFixture
{
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
    MakeFont("user fonts/own.ttf"_q);
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
}  // namespace
