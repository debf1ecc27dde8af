#include "EngineFixture.h"

#include <QImage>
#include <QJsonArray>
#include <QProcess>

using PackageTest = EngineFixture;

TEST_F(PackageTest, APackageOpensElsewhereWithoutItsOriginals)
{
    MakeImage("left/\u00e4 & b #1%.png"_q, 50, 50);
    MakeImage("right/\u00e4 & b #1%.png"_q, 60, 60);
    const QString absolute = mSandbox.GetPath("right/\u00e4 & b #1%.png"_q);
    const QString frames =
        MakeImageFrame("../left/\u00e4 & b #1%.png"_q) + MakeImageFrame(absolute) +
        MakeImageFrame("../right/../right/\u00e4 & b #1%.png"_q) + MakeImageFrame("../left/gone.png"_q) +
        "<COLOR NAME='Gold' SPACE='CMYK' C='0' M='20' Y='60' K='20' Spot='1'/>"
        "<COLOR NAME='Unused' SPACE='CMYK' C='0' M='20' Y='60' K='20' Spot='1'/>"
        "<PAGEOBJECT XPOS='300' YPOS='30' OwnPage='0' PTYPE='6' WIDTH='50' HEIGHT='50' "
        "FRTYPE='0' CLIPEDIT='0' PWIDTH='0' PCOLOR='Gold' PCOLOR2='None' LAYER='0' "
        "path='M0 0 L50 0 L50 50 L0 50 L0 0 Z' copath='M0 0 L50 0 L50 50 L0 50 L0 0 Z'/>"_q;
    Open(MakeDocument("documents/a document.sla"_q, 3, frames + MakeText("DejaVu Sans Book"_q)));
    const QByteArray before = ReadFile(mSandbox.GetPath("documents/a document.sla"_q));
    const QString folder = GetOutput("a document Folder"_q);
    mHost->SetLastPDF(GetOutput("a.pdf"_q),
                      {{"settings"_q, QJsonArray{QJsonObject{{"key"_q, "Slug"_q},
                                                             {"asked"_q, "true"_q},
                                                             {"answer"_q, "not possible"_q},
                                                             {"note"_q, "it is cut off"_q}}}},
                       {"notes"_q, QJsonArray{"A note."_q}}});
    ASSERT_EQ(PackageDocument(folder), cSuccess);
    EXPECT_EQ(PackageDocument(folder), cFailure) << "a package went into one that is there";
    EXPECT_EQ(ReadFile(mSandbox.GetPath("documents/a document.sla"_q)), before);

    const QString report = QString::fromUtf8(ReadFile(folder + "/Package Report.txt"_q));
    for (const QString& line :
         "Date: 20|Missing: 1\n  file /|Pages: 3|  1: 400 x 300 pt|Inks: 2\n  Black - process\n  Gold - "
         "spot\n|"
         "  DejaVu Sans Book - fonts/DejaVuSans.ttf (TrueType, embedding: installable)|Images: 4|"
         "ä & b #1%.png, page 1: 36 dpi, RGB|page 1: 43 dpi, RGB|gone.png, page 1: MISSING|Links: "
         "3|/left/gone.png - MISSING|"
         "Title: A title|exactly: 1\n  Slug true - not possible: it is cut off\n|  A note."_list)
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
    CancelCounter observer;
    mHost->SetCancelObserver(&observer);
    Open(MakeDocument("documents/a.sla"_q, 1));
    const QString folder = GetOutput("a Folder"_q);
    mFrontend.onWait = [&] { return QFileInfo::exists(folder + "/a.sla"_q); };
    EXPECT_EQ(PackageDocument(folder), cFailure);
    EXPECT_FALSE(QFileInfo::exists(folder));
    EXPECT_EQ(observer.count, 1);
    mFrontend.onWait = nullptr;
    EXPECT_EQ(PackageDocument(folder), cSuccess);
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
    ASSERT_EQ(PackageDocument(folder), cSuccess);
    RestartHost(GetSetup());
    Open(path);
    EXPECT_EQ(mHost->GetActiveDocument()->GetInfo()->GetMissingFonts(), "DejaXu Sans Book"_list);
    EXPECT_EQ(Export(GetOutput("a.pdf"_q)), cFailure);
    Open(MoveAway(folder, "documents|user fonts"_list) + "a.sla"_q);
    EXPECT_EQ(mHost->GetActiveDocument()->GetInfo()->GetMissingFonts(), QStringList());
    for (const char* settings : {"", cForX})
        EXPECT_EQ(Export(GetOutput("a.pdf"_q), settings), cSuccess);
}
TEST_F(PackageTest, NamesOfAnyLengthAndProfilesOfImagesComeAlong)
{
    const ColorProfile profile = mHost->GetRunner().GetProfiles().value(0);
    ASSERT_FALSE(profile.path.isEmpty());
    const QString image = "images/"_q + QString(120, QChar(0xE4)) + "b.image.png"_q;  // 252 bytes
    const QString twin = "images/"_q + QString(120, QChar(0xE4)) + "c.image.png"_q;
    MakeImage(image, 20, 20);
    MakeImage(twin, 30, 30);
    const QString name = QString(251, QLatin1Char('x')) + ".sla"_q;
    const QString path = MakeDocument(
        "documents/"_q + name, 1,
        MakeImageFrame("../"_q + image, "PRFILE=\"%1\" EMBEDDED=\"0\""_q.arg(profile.name.toHtmlEscaped())) +
            MakeImageFrame("../"_q + twin, "PRFILE=\"No such profile\" EMBEDDED=\"0\""_q));
    WriteFile(path, ReadFile(path).replace("UNITS=\"0\"", "UNITS=\"0\" HCMS=\"1\" DPuse=\"1\""));
    Open(path);
    const QString folder = mSandbox.GetPath("Temp/me/Press/a Folder"_q);
    ASSERT_EQ(PackageDocument(folder), cSuccess);
    EXPECT_TRUE(ReadFile(folder + "/Package Report.txt"_q).contains("\nHopbox: Press\n"));
    EXPECT_TRUE(QFileInfo::exists(folder + "/profiles/"_q + QFileInfo(profile.path).fileName()));
    EXPECT_TRUE(ReadFile(folder + "/Package Report.txt"_q).contains("\n  colour profile No such profile\n"));
    const QString moved = MoveAway(folder, "documents|images"_list);
    const QStringList documents = QDir(moved).entryList({"*.sla"_q});
    ASSERT_EQ(documents.size(), 1);
    const QStringList links = GetLinks(moved + documents[0], moved);
    ASSERT_EQ(links.size(), 2);
    for (const QString& link : links)
        EXPECT_TRUE(link.startsWith("images/"_q) && link.endsWith(".image.png"_q)) << link.toStdString();
}
