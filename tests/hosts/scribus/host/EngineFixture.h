#pragma once

#include "hosts/scribus/host/ScribusHost.h"
#include "hosts/scribus/runner/IHostFrontend.h"
#include "tests/support/FailureNote.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Test.h"

#include <QRectF>

// A frontend that records and does what a test wants.
class RecordingFrontend : public IHostFrontend
{
public:
    void BeginCommand(const QString& title, int) override { events.append(QStringLiteral("begin ") + title); }
    void BeginStep(const QString&) override { ++steps; }
    bool IsCancelled() override { return onWait && onWait(); }
    void EndCommand() override { events.append(QStringLiteral("end")); }
    int32_t ShowAlert(const QString&, const QString&, const QString&, const QString&, int32_t button,
                      int32_t) override
    {
        return button;
    }
    Decision AskToGoOn(const QString&, const QStringList& problems) override
    {
        asked += problems;
        return decision;
    }
    QString AskForSavePath(const QString&) override { return savePath; }

    QStringList events;
    int steps = 0;
    std::function<bool()> onWait;  // asked whether the user cancels
    QString savePath;
    QStringList asked;  // problems, about which this is the answer
    Decision decision = Decision::Refuse;
};

// Counts how often the user is said to have cancelled.
struct CancelCounter final : ICancelObserver
{
    void OnCommandCancelled() override { ++count; }
    int count = 0;
};

// What another program prints.
QByteArray RunProgram(const QString& program, const QStringList& arguments);

// What the boxes of a page are, in points, and what else pdfinfo says of a PDF.
struct PdfFacts
{
    int pageCount = 0;
    QString version;
    QMap<QString, QRectF> boxes;  // of the first page, by names such as "MediaBox"

    static PdfFacts Read(const QString& path);
};

// A host over the real Scribus, in a sandbox, with the commands that a plug-in would run.
class EngineFixture : public ::testing::Test
{
protected:
    EngineFixture();
    ~EngineFixture() override;

    // The setup that all tests use: one home, so that the fonts are looked at once.
    static ScribusSetup GetSetup();

    // Makes the file `name` in the sandbox: a document of pages of 300 points height, with what an XML text
    // adds behind the pages.
    QString MakeDocument(const QString& name, int pageCount, const QString& objects = QString(),
                         int width = 400);

    // An element that shows the image file; the text is for MakeDocument. `attributes` are more of its own.
    static QString MakeImageFrame(const QString& link, const QString& attributes = QString());

    // An element with a text in a font, 10 points from the left and the top of the page.
    static QString MakeText(const QString& font);

    // Writes a PNG of the size in the sandbox.
    QString MakeImage(const QString& name, int width, int height);

    // Writes a font that no system has, "DejaXu Sans Book": another one under a name of its own.
    void MakeFont(const QString& name);

    // Moves what was made to another place, "moved/" in the sandbox, and takes away the originals.
    QString MoveAway(const QString& folder, const QStringList& originals);

    // The links of a document, by their paths in a folder; with " MISSING" where they lead nowhere.
    QStringList GetLinks(const QString& path, const QString& folder);

    // Writes job options that hold the settings.
    QString MakeJobOptions(const QByteArray& settings);

    // Exports pages of the active document as a plug-in does; `range` empty for all. `adjust` overrules
    // settings.
    using Adjust = std::function<void(IPDFExportPreferences& preferences)>;
    ErrorCode Export(const QString& output, const QByteArray& settings = QByteArray(),
                     const QString& range = QString(), const Adjust& adjust = nullptr);

    // Settings for a PDF/X-3 that a document without transparency can be.
    static constexpr const char* cForX =
        "/CheckCompliance [/PDFX3:2003] /PDFXOutputIntentProfile (ISO Coated v2 300% \\(basICColor\\))";

    // Exports or packages the active book; packages the active document, with its report.
    ErrorCode ExportBook(const QString& output, const QByteArray& settings = QByteArray());
    ErrorCode PackageDocument(const QString& folder);
    ErrorCode PackageBook(const QString& folder);

    // A host in the place of the first one, with another setup.
    void RestartHost(const ScribusSetup& setup);

    // The same with a program in the place of Scribus.
    void RestartHost(const QByteArray& program);
    // The same with a Scribus that leaves a line for each time it is started.
    void CountStarts();
    int GetStarts() const { return ReadFile(mSandbox.GetPath("starts"_q)).count('\n'); }

    void Open(const QString& path);
    // The notes in the report of the last export.
    QStringList GetNotes() const { return mHost->GetLastReport()["notes"_q].toVariant().toStringList(); }
    QStringList ListOutput() const { return ListFolder(mSandbox.GetPath("out"_q)); }
    QString GetOutput(const QString& name) const { return mSandbox.GetPath(QStringLiteral("out/") + name); }

    Sandbox mSandbox;
    std::shared_ptr<LogRecorder> mLog;
    RecordingFrontend mFrontend;
    std::unique_ptr<ScribusHost> mHost;
    const FailureNote mNote{[this] { return mHost ? mHost->GetLastFailure().toStdString() : std::string(); }};
};
