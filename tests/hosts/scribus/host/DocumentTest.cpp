#include "EngineFixture.h"

#include <QImage>

namespace
{
class DocumentTest : public EngineFixture
{
protected:
    // Starts a host whose Scribus leaves a line for each time it is started.
    void CountStarts()
    {
        const QString program = mSandbox.GetPath("scribus"_q);
        WriteFile(program, "#!/bin/sh\necho >> '" + QFile::encodeName(mSandbox.GetPath("starts"_q)) +
                               "'\nexec /usr/bin/scribus \"$@\"\n");
        QFile::setPermissions(program, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        ScribusSetup setup = GetSetup();
        setup.scribus = program;
        RestartHost(setup);
    }

    int GetStarts() { return ReadFile(mSandbox.GetPath("starts"_q)).count('\n'); }
};

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
}

TEST_F(DocumentTest, ANewDocumentKeepsItsLinksWhereverItIsSaved)
{
    MakeImage("images/image.png"_q, 30, 30);
    const QString original = MakeDocument("a.sla"_q, 1, MakeImageFrame("images/image.png"_q));
    QString reason;
    const auto document = mHost->NewDocument(original, reason);
    ASSERT_NE(document, nullptr) << reason.toStdString();
    EXPECT_FALSE(document->IsSaved());
    const HostPtr<IDocument> front = mHost->QueryLayoutUtils()->QueryFrontDocument();
    EXPECT_EQ(front->GetName().GetString(), "Untitled-1"_q);
    EXPECT_TRUE(front->GetFile().IsEmpty());
    EXPECT_EQ(mHost->QueryDocumentUtils()->SaveDocument(*front), cFailure) << "the user cancels";
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
}  // namespace
