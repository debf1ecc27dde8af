#include "EngineFixture.h"

#include <QJsonArray>

// What is wrong with a document is told before it is exported, and somebody decides.

class PreflightTest : public EngineFixture
{
protected:
    bool HasStartedExport() const { return mFrontend.steps > 0 && QFile::exists(mSandbox.GetPath("ran"_q)); }

    // A host whose Scribus leaves a file behind when it exports.
    void WatchExports()
    {
        RestartHost("#!/bin/sh\ncase \"$*\" in *'\"operation\":\"pdf\"'*) : > '" +
                    QFile::encodeName(mSandbox.GetPath("ran"_q)) +
                    "' ;; esac\nexec /usr/bin/scribus \"$@\"\n");
    }
};

TEST_F(PreflightTest, WhatIsMissingOrTooCoarseIsToldBeforeTheExportAndSomebodyDecides)
{
    MakeImage("coarse.png"_q, 100, 100);
    MakeImage("fine.png"_q, 600, 600);
    WriteFile(mSandbox.GetPath("torn.png"_q), ReadFile(mSandbox.GetPath("fine.png"_q)).left(200));
    const QString unprinted = MakeImageFrame("unprinted.png"_q, "PRINTABLE=\"0\""_q);
    const QString elsewhere = MakeImageFrame("page2.png"_q).replace("YPOS=\"30\""_q, "YPOS=\"400\""_q);
    const QString master = MakeImageFrame("master.png"_q)
                               .replace("PAGEOBJECT"_q, "MASTEROBJECT"_q)
                               .replace("OwnPage=\"0\""_q, "OwnPage=\"0\" OnMasterPage=\"Normal\""_q);
    const QString path = MakeDocument(
        "a.sla"_q, 2,
        MakeImageFrame("coarse.png"_q) + MakeImageFrame("fine.png"_q) + MakeImageFrame("torn.png"_q) +
            QString(elsewhere).replace("OwnPage=\"0\""_q, "OwnPage=\"1\""_q) + unprinted + master);
    WriteFile(path, ReadFile(path)
                        .replace("UNITS=\"0\"", "UNITS=\"0\" HCMS=\"1\" DPuse=\"1\" DPIn=\"Gone RGB\"")
                        .replace("DPIn=", "DPPr=\"ISO Coated v2 300% (basICColor)\" DPIn="));
    WatchExports();
    Open(path);
    const QByteArray settings = "/ColorImageMinResolution 100 /ColorImageMinResolutionPolicy ";
    const QStringList problems{"\"master.png\" on page 1 is missing."_q,
                               "\"coarse.png\" on page 1 has 72 dots per inch, fewer than 100."_q,
                               "\"torn.png\" on page 1 is damaged, or no image."_q,
                               "The colour profile \"Gone RGB\" is missing; another stands for it."_q};
    EXPECT_EQ(Export(GetOutput("a.pdf"_q), settings + "/Error", "1"_q), cFailure);
    EXPECT_EQ(mHost->GetLastFailure().toStdString(), problems.join(QLatin1Char(' ')).toStdString());
    EXPECT_EQ(mFrontend.asked, problems);
    EXPECT_FALSE(HasStartedExport());

    mFrontend.decision = IHostFrontend::Decision::Cancel;
    EXPECT_EQ(Export(GetOutput("a.pdf"_q), settings + "/Error", "1"_q), cFailure);
    EXPECT_EQ(mHost->GetLastFailure(), "The user cancelled."_q);
    EXPECT_FALSE(HasStartedExport());

    mFrontend.decision = IHostFrontend::Decision::GoOn;
    mFrontend.asked.clear();
    ASSERT_EQ(Export(GetOutput("a.pdf"_q), settings + "/Error", "2,1"_q), cSuccess);
    QStringList all = problems;
    all[0] = "\"master.png\" on page 2 is missing."_q;
    all.insert(3, "\"page2.png\" on page 2 is missing."_q);
    EXPECT_EQ(mFrontend.asked, all) << "each once, those that are seen in the PDF too";
    const QStringList notes = GetNotes();
    for (const QString& problem : all)
        EXPECT_EQ(notes.count(problem), 1) << problem.toStdString();
    EXPECT_TRUE(HasStartedExport());
}

TEST_F(PreflightTest, OnlyAFontThatATextUsesIsTheDocuments)
{
    const QString styles =
        "<STYLE NAME='Unused' FONT='No Such Font Regular'/><CHARSTYLE CNAME='Neither' FONT='Gone Bold'/>\n"_q;
    const QString path = MakeDocument("a.sla"_q, 1, styles + MakeText("DejaVu Sans Bold"_q));
    Open(path);
    const DocumentInfo* info = mHost->GetActiveDocument()->GetInfo();
    ASSERT_EQ(info->fonts.size(), 1);
    EXPECT_EQ(info->fonts[0].name, "DejaVu Sans Bold"_q);
    EXPECT_FALSE(info->fonts[0].file.isEmpty());
    EXPECT_EQ(Export(GetOutput("a.pdf"_q)), cSuccess);

    MakeDocument("a.sla"_q, 1, styles + MakeText("No Such Font Regular"_q));
    EXPECT_EQ(mHost->GetActiveDocument()->GetInfo()->GetMissingFonts(), "No Such Font Regular"_list);
    EXPECT_EQ(Export(GetOutput("a.pdf"_q)), cFailure);
    EXPECT_TRUE(mHost->GetLastFailure().contains("No Such Font Regular"_q));
}
