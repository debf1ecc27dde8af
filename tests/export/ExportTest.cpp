#include "ExportRun.h"
#include "export/JobOptionsFolder.h"
#include "export/WorkFolder.h"
#include "foundation/system/PSystem.h"
#include "foundation/trace/GTrace.h"
#include "hopbox/HopboxFolder.h"
#include "hopbox/HopboxRegistry.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/PrinterProcessor.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QProcess>
#include <QUrl>

static const QStringList cWithPackage = "IncludeFilePackage=true"_list;

class ExportTest : public ExportFixture
{
protected:
    // Makes a Hopbox as its owner does; gives its key.
    GString CreateHopbox(const QString& name, const QStringList& settings)
    {
        const QString jobOptions = GetSandbox().GetPath("a.joboptions"_q);
        EXPECT_TRUE(WriteFile(jobOptions, "<< /A 1 >>"));
        QStringList arguments = {"create"_q, name, "--job-options"_q, jobOptions, "--json"_q};
        for (const QString& setting : settings)
            arguments << "--setting"_q << setting;
        QProcess process;
        process.start(QCoreApplication::applicationDirPath() + "/../bin/hopboxctl"_q, arguments);
        EXPECT_TRUE(process.waitForFinished());
        return QJsonDocument::fromJson(process.readAll()).object().value("Key"_q).toString();
    }

    static GPathName GetUserFolder()
    {
        return GetTemporary().GetChild(HopboxFolder::MakeName(PSystem::GetLogonName()));
    }

    void ExpectNothingTemporaryLeft() const
    {
        EXPECT_TRUE(List(JobOptionsFolder::GetPath()).isEmpty());
        EXPECT_EQ(QDir(GetTemporary().GetNativePath()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
                  QStringList{GetUserFolder().GetLeaf()});
        EXPECT_EQ(PlugInStore::ReadList().GetCount(), 1);
    }
};

TEST_F(ExportTest, FromAHopboxOfTheCommandLineToTheInboxOfARealReceiver)
{
    const QString name = "Gr\u00F6\u00DFe 100% \u65E5\u672C"_q;
    const GString key =
        CreateHopbox(name, "BleedChoice=1|BleedTopValue=8.5|Trim=true|PrintSpreads=true"_list);
    ASSERT_FALSE(key.isEmpty());
    PrinterProcessor receiver(GetSandbox(), {"--inbox"_q, GetSandbox().GetPath("Inbox"_q)});
    ExportParty party;
    party.Export(key, [](GCPTSaveAsTool& tool) { tool.SetPageRange("3,1-2,3"_q); });
    EXPECT_EQ(party.alerts, QStringList());
    EXPECT_EQ(party.host.GetUnreleased(), QStringList());

    ASSERT_EQ(party.host.commands.size(), 1u);
    const FakeCommandRecord& command = *party.host.commands.front();
    EXPECT_EQ(command.jobOptions, QByteArray("<< /A 1 >>"));
    EXPECT_EQ(GPathName(command.jobOptionsPath).GetParent(), JobOptionsFolder::GetPath());
    EXPECT_EQ(command.pages, (std::vector<UID>{GetPageUID(3), GetPageUID(1), GetPageUID(2), GetPageUID(3)}));
    EXPECT_TRUE(command.isSpreads);
    EXPECT_EQ(command.name, party.host.documents.front().name);
    EXPECT_EQ(command.lengths, (std::map<PDFLength, double>{{PDFLength::BleedTop, 8.5}}));
    EXPECT_EQ(command.switches, (std::map<PDFSwitch, bool>{{PDFSwitch::UseDocumentBleed, false},
                                                           {PDFSwitch::CropMarks, true}}));

    const GPathName pdf = GetUserFolder().GetChild(name).GetChild("Gr\u00F6\u00DFe v1.2.pdf"_q);
    EXPECT_EQ(party.action.GetOutputPath(), pdf);
    ExpectNothingTemporaryLeft();
    const QJsonObject job = receiver.ReadLine();
    const QJsonObject ticket = {{"UserName"_q, PSystem::GetLogonName()},
                                {"JobPath"_q, pdf.GetNativePath()},
                                {"PrinterName"_q, name},
                                {"PortName"_q, "10987"_q},
                                {"CopyCount"_q, 1},
                                {"PrinterID"_q, QString()},
                                {"kind"_q, 145},
                                {"valid"_q, true}};
    for (const QString& field : ticket.keys())
        EXPECT_EQ(job.value(field), ticket.value(field)) << field.toStdString();
    EXPECT_EQ(ReadFile(job.value("saved"_q).toString()), ReadFile(pdf.GetNativePath()));
    EXPECT_TRUE(ReadFile(pdf.GetNativePath()).startsWith("%PDF"));
}

TEST_F(ExportTest, ThePackageFollowsThePDFAsThePathOrURLThatTheBuildTakes)
{
    PrinterProcessor receiver(GetSandbox(), {"--inbox"_q, GetSandbox().GetPath("In box"_q)});
    const struct
    {
        int32_t build;
        bool takesURL;
    } cases[] = {{637639, false}, {637640, true}, {666, true},       {665, false},
                 {667, false},    {0, false},     {2147483647, true}};
    for (const ExportKind kind : {ExportKind::Document, ExportKind::Book}) {
        for (const auto& test : cases) {
            SCOPED_TRACE(test.build);
            ExportParty party(kind);
            FakeDocument& document = party.host.documents.front();
            document.path = GetSandbox().GetPath("50% #1 \u65E5.indd"_q);
            party.host.books.front().documentPaths.clear();
            EXPECT_TRUE(WriteFile(document.path, "indd"));
            EXPECT_TRUE(WriteFile(party.host.books.front().path, "indb"));
            party.Export(MakeHopbox("20% #2 \u672C"_q, cWithPackage, test.build));
            EXPECT_EQ(party.alerts, QStringList());
            EXPECT_EQ(party.host.GetUnreleased(), QStringList());

            const GPathName& package = party.action.GetPackagePath();
            EXPECT_EQ(party.action.GetOutputPath(), package);
            EXPECT_EQ(package.GetLeaf(), "50% #1 \u65E5 Folder"_q);
            EXPECT_EQ(party.action.GetPDFPath(), package.GetParent().GetChild("50% #1 \u65E5.pdf"_q));
            EXPECT_EQ(party.host.packages.back()->settings,
                      (std::map<PackageSetting, bool>{{PackageSetting::Fonts, true},
                                                      {PackageSetting::Links, true},
                                                      {PackageSetting::Profiles, true},
                                                      {PackageSetting::UpdateGraphics, false},
                                                      {PackageSetting::HiddenLayers, false},
                                                      {PackageSetting::IgnorePreflightErrors, true},
                                                      {PackageSetting::Report, false},
                                                      {PackageSetting::DocumentHyphenationOnly, false}}));
            EXPECT_EQ(receiver.ReadLine().value("JobPath"_q).toString(),
                      party.action.GetPDFPath().GetNativePath());
            const QJsonObject job = receiver.ReadLine();
            const QString location = job.value("JobPath"_q).toString();
            if (test.takesURL) {
                EXPECT_TRUE(location.startsWith("file:///"_q)) << location.toStdString();
                EXPECT_TRUE(location.endsWith("/50%25%20%231%20%E6%97%A5%20Folder?isinddpkg=true"_q));
            } else {
                EXPECT_EQ(location, package.GetNativePath());
            }
            const auto copy = ReadTree(job.value("saved"_q).toString());
            EXPECT_EQ(copy, ReadTree(package.GetNativePath()));
            EXPECT_EQ(copy.size(), kind == ExportKind::Document ? 2 : 1);
        }
    }
    EXPECT_EQ(QDir(GetSandbox().GetPath("In box"_q)).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 14);
}

TEST_F(ExportTest, ABookBecomesOnePDFOfItsDocumentsWithTheHopboxsSettings)
{
    ExportParty party(ExportKind::Book);
    party.host.books.front().isModified = true;
    party.Export(MakeHopbox("Press"_q, "Trim=true"_list));
    ASSERT_EQ(party.host.commands.size(), 2u);
    const FakeCommandRecord& preferences = *party.host.commands.front();
    EXPECT_EQ(preferences.commandClass, 9479);
    EXPECT_TRUE(preferences.hasRun);
    EXPECT_EQ(preferences.jobOptions, QByteArray("<< /A 1 >>"));
    EXPECT_EQ(preferences.switches, (std::map<PDFSwitch, bool>{{PDFSwitch::CropMarks, true}}));
    const FakeCommandRecord& command = *party.host.commands.back();
    EXPECT_EQ(command.commandClass, 65563);
    EXPECT_EQ(command.bookPath, party.host.books.front().path);
    EXPECT_EQ(command.documentCount, 3);
    EXPECT_EQ(command.outputPath, party.action.GetPDFPath().GetNativePath());
    EXPECT_FALSE(party.host.books.front().isModified);
    EXPECT_TRUE(party.host.packages.empty());
}

// Ends when the receiver has been sent the first of two jobs.
class ReceiverEnd : public LogRecorder
{
public:
    explicit ReceiverEnd(PrinterProcessor& receiver) : mReceiver(receiver) {}

    void log(Morvane::LogLevel, const QString& source, const QString&) noexcept override
    {
        if (source == "HopboxHandOff::Deliver"_q) {
            EXPECT_EQ(mReceiver.WaitForExit(), 0);
        }
    }

private:
    PrinterProcessor& mReceiver;
};

TEST_F(ExportTest, AReceiverThatGoesBetweenTheTwoHandOffsIsToldOfAndBothResultsStay)
{
    PrinterProcessor receiver(GetSandbox(), "--count|1"_list);
    GTrace::SetLogger(std::make_shared<ReceiverEnd>(receiver));
    ExportParty party;
    party.Export(MakeHopbox("Press"_q, cWithPackage));
    GTrace::SetLogger(nullptr);
    EXPECT_EQ(receiver.ReadLine().value("JobPath"_q).toString(), party.action.GetPDFPath().GetNativePath());
    EXPECT_EQ(party.alerts, QStringList{MakeAlert(cNobodyTakesIt)});
    EXPECT_TRUE(ReadFile(party.action.GetPDFPath().GetNativePath()).startsWith("%PDF"));
    EXPECT_EQ(List(party.action.GetPackagePath()), "Instructions.txt"_list);
    ExpectNothingTemporaryLeft();
}

TEST_F(ExportTest, OutputSettingsGoOverTheJobOptions)
{
    struct Case
    {
        const char* settings;  // with blanks between
        std::map<PDFSwitch, bool> switches;
        std::map<PDFLength, double> lengths;
        int32_t spreads;
    };
    const std::map<PDFSwitch, bool> none;
    const auto marks = [](bool isOn) {
        return std::map<PDFSwitch, bool>{{PDFSwitch::CropMarks, isOn},
                                         {PDFSwitch::BleedMarks, isOn},
                                         {PDFSwitch::RegistrationMarks, isOn},
                                         {PDFSwitch::ColorBars, isOn},
                                         {PDFSwitch::PageInformation, isOn}};
    };
    std::map<PDFSwitch, bool> allButBars = marks(true);
    allButBars[PDFSwitch::ColorBars] = false;
    const Case cases[] = {
        {"UserSettings=false", none, {}, 0},
        {"BleedChoice=0 BleedTopValue=1", none, {}, 0},
        {"BleedChoice=1 BleedTopValue=0 BleedBottomValue=2.5 BleedInsideValue=-1 BleedOutsideValue=nan",
         {{PDFSwitch::UseDocumentBleed, false}},
         {{PDFLength::BleedTop, 0}, {PDFLength::BleedBottom, 2.5}},
         0},
        {"BleedChoice=1 BleedInsideValue=3 BleedOutsideValue=4",
         {{PDFSwitch::UseDocumentBleed, false}},
         {{PDFLength::BleedInside, 3}, {PDFLength::BleedOutside, 4}},
         0},
        {"BleedChoice=2 BleedTopValue=1", {{PDFSwitch::UseDocumentBleed, true}}, {}, 0},
        {"BleedSlugArea=true PrintSpreads=true", {{PDFSwitch::IncludeSlug, true}}, {}, 1},
        {"BleedSlugArea=false PrintSpreads=false", none, {}, 0},
        {"PrinterMarks=true", marks(true), {}, 0},
        {"PrinterMarks=false", marks(false), {}, 0},
        {"PrinterMarks=true ColorBars=false", allButBars, {}, 0},
        {"Bleed=true PrinterRegistration=false PageInfo=1",
         {{PDFSwitch::BleedMarks, true},
          {PDFSwitch::RegistrationMarks, false},
          {PDFSwitch::PageInformation, false}},
         {},
         0},
        {"MarkOffset=6 MarkWeight=0", none, {{PDFLength::MarkOffset, 6}, {PDFLength::MarkWeight, 0.125}}, 0},
        {"MarkOffset=0 MarkWeight=2", none, {{PDFLength::MarkWeight, 0.5}}, 0},
        {"MarkOffset=inf MarkWeight=1", none, {{PDFLength::MarkWeight, 0.25}}, 0},
        {"MarkWeight=thick", none, {{PDFLength::MarkWeight, 0.25}}, 0}};
    for (const Case& row : cases) {
        SCOPED_TRACE(row.settings);
        const GString key = MakeHopbox(QString::fromLatin1(row.settings),
                                       QString::fromLatin1(row.settings).split(QLatin1Char(' ')));
        ExportParty party;
        party.Export(key);
        ASSERT_EQ(party.host.commands.size(), 1u);
        EXPECT_EQ(party.host.commands.front()->switches, row.switches);
        EXPECT_EQ(party.host.commands.front()->lengths, row.lengths);
        EXPECT_EQ(party.host.commands.front()->readerSpreads, row.spreads);
    }
}

TEST_F(ExportTest, WhateverThingsAreCalledThePDFEndsInTheWorkFolder)
{
    QStringList names =
        "../../../evil|..|.|..\\..\\evil|/etc/evil|C:\\evil|CON|nul.indd|a. . |a:b*?<>\"c|\u202Efdp.exe\u0007\t"_list;
    names += {"pipe|d"_q, QString(300, QLatin1Char('x')), QString(300, QChar(0x65E5)),
              QStringLiteral("half \xD83D pair"), "\U0001F4E6 \u0627\u0644"_q};
    for (const QString& name : names) {
        SCOPED_TRACE(name.toStdString());
        GFileSystemBase::TryToRemoveFolder(GetTemporary());
        ExportParty party;
        FakeDocument& document = party.host.documents.front();
        document.name = name;
        document.path = GetSandbox().GetPath("x/"_q) + name;
        party.Export(MakeHopbox(name, cWithPackage));
        const GPathName pdf = party.action.GetPDFPath();
        ASSERT_FALSE(pdf.IsEmpty()) << party.alerts.join(QLatin1Char(' ')).toStdString();
        EXPECT_EQ(pdf.GetParent().GetParent(), GetUserFolder());
        EXPECT_EQ(party.action.GetPackagePath().GetParent(), pdf.GetParent());
        EXPECT_EQ(List(GetTemporary()).size(), 5);  // two folders, the PDF, the package and its report
        EXPECT_TRUE(ReadFile(pdf.GetNativePath()).startsWith("%PDF"));
        ExpectNothingTemporaryLeft();
    }
}

// Reserves a file and a folder of each name that it is told of, exports a document of that name, and says
// where everything is.
CHILD_ROLE(ExportDocuments)
{
    const PlugInStore store;
    PlugInPreferences::Initialize();
    ExportParty party;
    const auto say = [](const GPathName& path) { SayToParent(path.GetNativePath().toUtf8()); };
    for (GBuffer name = HearFromParent(); !name.isEmpty(); name = HearFromParent()) {
        for (const auto kind : {ReservedOutput::Kind::File, ReservedOutput::Kind::Folder}) {
            const GString leaf = QString::fromUtf8(name) + QString::number(static_cast<int>(kind));
            ReservedOutput output(WorkFolder::GetPath("Reserved"_q), leaf, kind);
            say(output.GetPathName());
            output.Keep();
        }
        party.host.documents.front().path = "/"_q + QString::fromUtf8(name);
        party.Export(arguments.at(0));
        say(party.action.GetPDFPath());
        say(party.action.GetPackagePath());
    }
    PlugInPreferences::Release();
    return 0;
}

TEST_F(ExportTest, TwoHostsThatExportTheSameDocumentAtOnceOverwriteNothing)
{
    const GString key = MakeHopbox("Press"_q, cWithPackage);
    WorkFolder::Make(WorkFolder::GetPath("Reserved"_q));
    ChildProcess one("ExportDocuments"_q, {key});
    ChildProcess other("ExportDocuments"_q, {key});
    for (const QString& name : "a|a|b|c"_list) {
        one.Say(name.toUtf8());
        other.Say(name.toUtf8());
        EXPECT_NE(one.ReadLine(), other.ReadLine());
        EXPECT_NE(one.ReadLine(), other.ReadLine());
        for (ChildProcess* host : {&one, &other}) {
            const QFileInfo pdf(QString::fromUtf8(host->ReadLine()));
            const QFileInfo package(QString::fromUtf8(host->ReadLine()));
            EXPECT_EQ(pdf.fileName(), name + ".pdf"_q);
            EXPECT_TRUE(ReadFile(pdf.filePath()).startsWith("%PDF"));
            EXPECT_EQ(package.fileName(), name + " Folder"_q);
            EXPECT_EQ(package.path(), pdf.path());
            EXPECT_EQ(ReadTree(package.filePath()).keys(), "Instructions.txt"_list);
        }
    }
    one.Say("");
    other.Say("");
    EXPECT_EQ(one.WaitForExit(), 0);
    EXPECT_EQ(other.WaitForExit(), 0);
    const QStringList items = List(GetUserFolder().GetChild("Press"_q));
    EXPECT_EQ(items.filter(".pdf"_q).size(), 8);
    EXPECT_EQ(items.filter("Instructions.txt"_q).size(), 8);
    ExpectNothingTemporaryLeft();
}

TEST_F(ExportTest, AnOlderPackageIsLeftAsItIs)
{
    const GString key = MakeHopbox("Press"_q, cWithPackage);
    ExportParty party;
    party.Export(key);
    const GPathName first = party.action.GetPackagePath();
    EXPECT_TRUE(GFileSystemBase::TryToRemoveFile(party.action.GetPDFPath()));
    EXPECT_TRUE(WriteFile(first.GetChild("Instructions.txt"_q).GetNativePath(), "first"));
    party.Export(key);
    const GPathName second = party.action.GetPackagePath();
    EXPECT_EQ(party.action.GetPDFPath().GetParent(), first.GetParent());
    EXPECT_EQ(second.GetParent().GetParent(), first.GetParent());
    EXPECT_EQ(second.GetLeaf(), first.GetLeaf());
    EXPECT_EQ(ReadTree(first.GetNativePath()).value("Instructions.txt"_q), QByteArray("first"));
    EXPECT_EQ(ReadTree(second.GetNativePath()).value("Instructions.txt"_q), QByteArray("Report"));
}

TEST_F(ExportTest, ARunIsAskedForByItsMessageAndEndsWithOneNotification)
{
    struct Notes : GObserver
    {
        void Update(GSubject&, int32_t notification) override { notes.append(notification); }
        QList<int> notes;
    };
    ExportParty party;
    Notes notes;
    party.action.Attach(notes);
    GCPTSaveAsProperties properties;
    const auto send = [&](int32_t message) {
        party.action.Receive(message, properties);
        return std::exchange(notes.notes, QList<int>());
    };
    EXPECT_TRUE(send(106).isEmpty());
    properties.hopboxKey = MakeHopbox("Press"_q);
    properties.hopboxName = "Press"_q;
    EXPECT_TRUE(send(107).isEmpty());
    EXPECT_TRUE(send(105).isEmpty());
    EXPECT_EQ(send(106), QList<int>{11});
    // Neither a second run nor other properties get into a run; what failed once is no cancelling later.
    party.host.onRun = [&] {
        const GCPTSaveAsProperties nothing;
        party.action.Receive(106, properties);
        party.action.Receive(107, nothing);
    };
    party.host.Make(HostOperation::RunPDFExport, HostAnswer::Fails);
    EXPECT_EQ(send(106), QList<int>{13});
    party.host.onRun = nullptr;
    EXPECT_EQ(send(106), QList<int>{12});
    EXPECT_FALSE(party.action.GetErrorText().isEmpty());
    party.host.Make(HostOperation::RunPDFExport, HostAnswer::Works);
    EXPECT_EQ(send(106), QList<int>{11});
    EXPECT_TRUE(party.action.GetErrorText().isEmpty());
    party.action.Detach(notes);
}
