#include "EngineFixture.h"
#include "plugin/boundary/HostTable.h"

#include <QImage>

using DocumentTest = EngineFixture;

TEST_F(DocumentTest, ScribusIsAskedOnceForEachStateOfTheFile)
{
    MakeImage("image.png"_q, 30, 30);
    const QString path =
        MakeDocument("a.sla"_q, 3, MakeImageFrame("image.png"_q) + MakeImageFrame("gone.png"_q));
    QByteArray text = ReadFile(path).replace("BOOK=\"0\"", "BOOK=\"1\"");
    WriteFile(path, text);
    CountStarts();
    Open(path);
    Open(path);
    const auto document = mHost->GetActiveDocument();
    const DocumentInfo info = *document->GetInfo();
    ASSERT_EQ(info.pages.size(), 3);
    EXPECT_TRUE(info.hasFacingPages);
    EXPECT_EQ(info.pages[0].side, PageSide::Right);
    EXPECT_EQ(info.pages[1].side, PageSide::Left);
    EXPECT_NEAR(info.pages[0].width, 400, 0.01);
    EXPECT_NEAR(info.bleed.top + 10 * info.bleed.bottom + 100 * info.bleed.inside + 1000 * info.bleed.outside,
                7685, 0.1);
    EXPECT_EQ(info.links.size(), 2);
    EXPECT_EQ(info.links[0].path, mSandbox.GetPath("gone.png"_q));
    EXPECT_TRUE(info.links[0].isMissing);
    EXPECT_FALSE(info.links[1].isMissing);
    EXPECT_EQ(info.title, "A title"_q);
    EXPECT_EQ(GetStarts(), 1);

    const QImage page = document->GetPreview(2, 36);
    EXPECT_NEAR(page.width(), 200, 2);
    EXPECT_EQ(document->GetPreview(2, 36), page);
    EXPECT_TRUE(document->GetPreview(3, 36).isNull());
    EXPECT_EQ(GetStarts(), 2);
    mHost->CloseDocument(document);
    Open(path);
    EXPECT_EQ(GetStarts(), 2);
    WriteFile(path, text.replace("A title", "Another"));
    EXPECT_EQ(mHost->GetActiveDocument()->GetInfo()->title, "Another"_q);
    EXPECT_EQ(GetStarts(), 3);

    // A range that is tried, as the dialog does while it is typed, is no failure of what is done next.
    const HostPtr<IDocument> opened = mHost->QueryLayoutUtils()->QueryFrontDocument();
    for (const auto& [range, names] : {std::pair("1-9"_q, false), std::pair("1-3"_q, true)}) {
        UIDList pages(opened->GetDataBase());
        EXPECT_EQ(opened->QueryPageList()->GetPageUIDs(PMString(range), pages) == cSuccess, names);
        EXPECT_EQ(mHost->GetRangeFailure().isEmpty(), names);
        EXPECT_EQ(mHost->GetLastFailure(), QString());
    }
}

TEST_F(DocumentTest, WhatScribusSaidIsKnownAtTheNextStartOfTheProgram)
{
    MakeImage("image.png"_q, 30, 30);
    const QString path = MakeDocument("a.sla"_q, 2, MakeImageFrame("image.png"_q));
    const auto restart = [&] {
        const int before = GetStarts();
        CountStarts();
        return GetStarts() - before;
    };
    const QString output = GetOutput("a.pdf"_q);
    for (const int starts : {2, 1}) {  // what Scribus says, and its PDF; the profiles, too, at the first time
        restart();
        const int before = GetStarts();
        Open(path);
        EXPECT_EQ(mHost->GetActiveDocument()->GetInfo()->links.value(0).path,
                  mSandbox.GetPath("image.png"_q));
        // The colours are no profile's, so that the export needs the document as Scribus keeps it.
        ASSERT_EQ(Export(output, "/ColorConversionStrategy /LeaveColorUnchanged"), cSuccess);
        EXPECT_LE(GetStarts() - before, starts + (starts == 2 ? 1 : 0));
        EXPECT_GE(GetStarts() - before, starts);
    }
    ASSERT_TRUE(QFile::remove(mSandbox.GetPath("image.png"_q)));
    restart();
    Open(path);
    EXPECT_TRUE(mHost->GetActiveDocument()->GetInfo()->links.value(0).isMissing);

    // A font that is missing may be there at any time.
    const QString poor = MakeDocument("poor.sla"_q, 1, MakeText("No Such Font"_q));
    for (int i = 0; i < 2; ++i) {
        restart();
        const int before = GetStarts();
        Open(poor);
        EXPECT_EQ(mHost->GetActiveDocument()->GetInfo()->GetMissingFonts(), "No Such Font"_list);
        EXPECT_EQ(GetStarts() - before, 1);
    }
}

TEST_F(DocumentTest, AFontFileThatHasChangedIsLookedAtAnew)
{
    MakeFont("fonts/own.ttf"_q);
    const QString font = mSandbox.GetPath("fonts/own.ttf"_q);
    const QString path = MakeDocument("a.sla"_q, 1, MakeText("DejaXu Sans Book"_q));
    Open(path);
    EXPECT_EQ(mHost->GetActiveDocument()->GetInfo()->GetMissingFonts(), QStringList());
    ASSERT_TRUE(QFile::remove(font));
    RestartHost(GetSetup());
    Open(path);
    EXPECT_EQ(mHost->GetActiveDocument()->GetInfo()->GetMissingFonts(), "DejaXu Sans Book"_list);
}

TEST_F(DocumentTest, ANewDocumentKeepsItsLinksWhereverItIsSaved)
{
    MakeImage("images/image.png"_q, 30, 30);
    const QString original = MakeDocument("a.sla"_q, 1, MakeImageFrame("images/image.png"_q));
    const GResult made = mHost->NewDocument(original);
    ASSERT_TRUE(made.HasSucceeded()) << made.GetReason().toStdString();
    const auto document = mHost->GetActiveDocument();
    EXPECT_FALSE(document->IsSaved());
    const HostPtr<IDocument> front = mHost->QueryLayoutUtils()->QueryFrontDocument();
    EXPECT_EQ(front->GetName().GetString(), "Untitled-1"_q);
    EXPECT_TRUE(front->GetFile().IsEmpty());
    HostTable table(*mHost);
    hopbox_handle handle = 0;
    ASSERT_EQ(HostTable::GetTable().get_front_document(&table, &handle), HOPBOX_OK);
    EXPECT_EQ(HostTable::GetTable().save_document(&table, handle), HOPBOX_CANCELLED);
    mFrontend.savePath = mSandbox.GetPath("else where/b.sla.gz"_q);
    EXPECT_EQ(mHost->QueryDocumentUtils()->SaveDocument(*front), cFailure) << "there is no such folder";
    mFrontend.savePath = GetOutput("b.sla.gz"_q);
    EXPECT_EQ(mHost->QueryDocumentUtils()->SaveDocument(*front), cSuccess);
    EXPECT_TRUE(front->IsSaved());
    EXPECT_EQ(document->GetPath(), mFrontend.savePath);
    EXPECT_TRUE(ReadFile(mFrontend.savePath).startsWith("\x1f\x8b"));
    ASSERT_EQ(document->GetInfo()->links.size(), 1);
    EXPECT_EQ(document->GetInfo()->links[0].path, mSandbox.GetPath("images/image.png"_q));
    EXPECT_FALSE(document->GetInfo()->links[0].isMissing);
}
