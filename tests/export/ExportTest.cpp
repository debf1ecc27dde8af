#include "ExportRun.h"
#include "export/JobOptionsFolder.h"
#include "export/PlacedJobOptions.h"
#include "foundation/system/PSystem.h"
#include "foundation/trace/GTrace.h"
#include "hopbox/HopboxFolder.h"
#include "hopbox/HopboxRegistry.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/PrinterProcessor.h"

#include <QJsonDocument>

static const QStringList cWithPackage = "IncludeFilePackage=true"_list;

// What a command was told beyond the job options, in the order of the host's settings.
static QString Describe(const FakeCommandRecord& command)
{
    const QStringList switches = "document|slug|crop|bleed|registration|bars|page"_list;
    const QStringList lengths = "top|bottom|inside|outside|offset|weight"_list;
    QStringList text;
    for (const auto& [setting, isOn] : command.switches)
        text += (isOn ? "+"_q : "-"_q) + switches[static_cast<int>(setting)];
    for (const auto& [setting, points] : command.lengths)
        text += lengths[static_cast<int>(setting)] + "="_q + QString::number(points);
    if (command.readerSpreads == cReaderSpreadsOn)
        text += "spreads"_q;
    return text.join(QLatin1Char(' '));
}

class ExportTest : public ExportFixture
{
protected:
    // Makes a Hopbox as its owner does; gives its key.
    GString CreateHopbox(const QString& name, const QString& settings)
    {
        const QString jobOptions = GetSandbox().GetPath("a.joboptions"_q);
        EXPECT_TRUE(WriteFile(jobOptions, "<< /A 1 >> setdistillerparams"));
        QProcess process;
        process.start(GetProgramPath("hopboxctl"),
                      QStringList{"create"_q, name, "--job-options"_q, jobOptions, "--json"_q} +
                          settings.split(QLatin1Char(' ')));
        EXPECT_TRUE(process.waitForFinished());
        const QJsonObject answer = QJsonDocument::fromJson(process.readAll()).object();
        return answer.value("result"_q).toObject().value("Key"_q).toString();
    }

    static GPathName GetUserFolder()
    {
        return GetTemporary().GetChild(HopboxFolder::MakeName(PSystem::GetLogonName()));
    }

    void ExpectNothingTemporaryLeft() const
    {
        EXPECT_TRUE(List(JobOptionsFolder::GetPath()).isEmpty());
        EXPECT_EQ(ListFolder(GetTemporary().GetNativePath()), QStringList{GetUserFolder().GetLeaf()});
        EXPECT_EQ(PlugInStore::ReadList().GetCount(), 1);
    }
};

// The host puts a name into brackets whose settings the user can't change.
TEST_F(ExportTest, PlacedJobOptionsBearTheNameThatTheHostShows)
{
    const GPathName source(GetSandbox().GetPath("Press.joboptions"_q));
    ASSERT_TRUE(WriteFile(source.GetNativePath(), "<< >>"));
    const PlacedJobOptions first(source);
    const PlacedJobOptions second(source);
    EXPECT_EQ(first.GetSettingsName(), "[Morvane_Hopbox_PDF]"_q);
    EXPECT_EQ(second.GetSettingsName(), "["_q + second.GetPathName().GetLeafWithoutExtension() + "]"_q);
    EXPECT_NE(second.GetSettingsName(), first.GetSettingsName());
    QFile::setPermissions(first.GetPathName().GetNativePath(), QFile::ReadOwner | QFile::WriteOwner);
    EXPECT_EQ(first.GetSettingsName(), "Morvane_Hopbox_PDF"_q);
}

TEST_F(ExportTest, FromAHopboxOfTheCommandLineToTheInboxOfARealReceiver)
{
    const QString name = "Gr\u00F6\u00DFe 100% \u65E5\u672C"_q;
    const GString key = CreateHopbox(
        name,
        "--setting BleedChoice=1 --setting BleedTopValue=8.5 --setting Trim=true --setting PrintSpreads=true"_q);
    PrinterProcessor receiver(GetSandbox(), {"--inbox"_q, GetSandbox().GetPath("Inbox"_q)});
    ExportParty party;
    party.host.onRun = [&] {
        const QString placed = party.host.commands.front()->jobOptionsPath;
        EXPECT_FALSE(QFile::permissions(placed) & QFile::WriteOwner) << placed.toStdString();
    };
    party.Export(key, [](GCPTSaveAsTool& tool) { tool.SetPageRange("3,1-2,3"_q); });
    EXPECT_EQ(party.alerts, QStringList());
    EXPECT_EQ(party.host.GetUnreleased(), QStringList());

    ASSERT_EQ(party.host.commands.size(), 1u);
    const FakeCommandRecord& command = *party.host.commands.front();
    EXPECT_EQ(command.jobOptions, QByteArray("<< /A 1 >> setdistillerparams"));
    EXPECT_EQ(GPathName(command.jobOptionsPath).GetParent(), JobOptionsFolder::GetPath());
    EXPECT_EQ(command.pages, (std::vector<UID>{GetPageUID(3), GetPageUID(1), GetPageUID(2), GetPageUID(3)}));
    EXPECT_TRUE(command.isSpreads);
    EXPECT_EQ(command.name, party.host.documents.front().name);
    EXPECT_EQ(Describe(command), "-document +crop top=8.5 spreads"_q);

    const GPathName pdf = GetUserFolder().GetChild(name).GetChild("Gr\u00F6\u00DFe v1.2.pdf"_q);
    EXPECT_EQ(party.action.GetOutputPath(), pdf);
    ExpectNothingTemporaryLeft();
    const QJsonObject job = receiver.ReadLine();
    EXPECT_EQ(job.value("PrinterName"_q).toString(), name);
    EXPECT_EQ(job.value("JobPath"_q).toString(), pdf.GetNativePath());
    EXPECT_EQ(ReadFile(job.value("saved"_q).toString()), ReadFile(pdf.GetNativePath()));
    EXPECT_TRUE(ReadFile(pdf.GetNativePath()).startsWith("%PDF"));
}

// Every export finds the package of the one before, but not its PDF.
TEST_F(ExportTest, ThePackageFollowsThePDFAsThePathOrURLThatTheBuildTakes)
{
    const std::pair<int32_t, bool> cases[] = {{637639, false},   {637640, true}, {666, true},
                                              {665, false},      {667, false},   {0, false},
                                              {2147483647, true}};
    const QString name = "50% #1 \u65E5"_q;
    const QString hopbox = "20% #2 \u672C"_q;
    const QString inbox = GetSandbox().GetPath("In box"_q);
    PrinterProcessor receiver(GetSandbox(), {"--inbox"_q, inbox});
    QStringList packages;
    for (const ExportKind kind : {ExportKind::Document, ExportKind::Book}) {
        for (const auto& [build, takesURL] : cases) {
            SCOPED_TRACE(build);
            ExportParty party(kind);
            QString& document = party.host.documents.front().path;
            FakeBook& book = party.host.books.front();
            document = book.documentPaths.front() = GetSandbox().GetPath(name + ".indd"_q);
            book.path = GetSandbox().GetPath(name + ".indb"_q);
            EXPECT_TRUE(WriteFile(document, "indd") && WriteFile(book.path, "indb"));
            party.Export(MakeHopbox(hopbox, cWithPackage, build));
            EXPECT_EQ(party.alerts, QStringList());

            const GPathName& package = party.action.GetPackagePath();
            const GPathName& pdf = party.action.GetPDFPath();
            EXPECT_EQ(pdf, GetUserFolder().GetChild(hopbox).GetChild(name + ".pdf"_q));
            EXPECT_EQ(party.action.GetOutputPath(), package);
            EXPECT_EQ(package.GetLeaf(), name + " Folder"_q);
            EXPECT_TRUE(package.IsBelow(pdf.GetParent()));
            packages.append(package.GetNativePath());
            QString settings;
            for (const auto& setting : party.host.packages.back()->settings)
                settings += " %1=%2"_q.arg(int(setting.first)).arg(int(setting.second));
            EXPECT_EQ(settings, " 0=1 1=1 2=1 3=0 4=0 7=0 5=1 6=0"_q);

            EXPECT_EQ(receiver.ReadLine().value("JobPath"_q).toString(), pdf.GetNativePath());
            const QJsonObject job = receiver.ReadLine();
            const QString location = job.value("JobPath"_q).toString();
            if (takesURL) {
                EXPECT_TRUE(location.startsWith("file:///"_q)) << location.toStdString();
                EXPECT_TRUE(location.endsWith("/50%25%20%231%20%E6%97%A5%20Folder?isinddpkg=true"_q));
            } else {
                EXPECT_EQ(location, package.GetNativePath());
            }
            EXPECT_EQ(ReadTree(job.value("saved"_q).toString()), ReadTree(package.GetNativePath()));
            EXPECT_TRUE(GFileSystemBase::TryToRemoveFile(pdf));
            ExpectNothingTemporaryLeft();
        }
    }
    EXPECT_EQ(QDir(inbox).entryList(QDir::Dirs | QDir::NoDotAndDotDot).size(), 14);
    EXPECT_EQ(packages.removeDuplicates(), 0);
    for (const QString& package : packages)
        EXPECT_EQ(ReadTree(package).size(), packages.indexOf(package) < 7 ? 2 : 1);  // with the report
}

TEST_F(ExportTest, ABookBecomesOnePDFOfItsDocumentsWithTheHopboxsSettings)
{
    ExportParty party(ExportKind::Book);
    party.host.books.front().isModified = true;
    party.Export(MakeHopbox("Press"_q, "Trim=true"_list));
    ASSERT_EQ(party.host.commands.size(), 2u);
    const FakeCommandRecord& preferences = *party.host.commands.front();
    EXPECT_TRUE(preferences.hasRun);
    EXPECT_EQ(preferences.jobOptions, QByteArray("<< /A 1 >>"));
    EXPECT_EQ(Describe(preferences), "+crop"_q);
    const FakeCommandRecord& command = *party.host.commands.back();
    EXPECT_EQ(command.bookPath, party.host.books.front().path);
    EXPECT_EQ(command.documentCount, 3);
    EXPECT_EQ(command.outputPath, party.action.GetPDFPath().GetNativePath());
    EXPECT_FALSE(party.host.books.front().isModified);
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
    EXPECT_EQ(List(party.action.GetPackagePath()), "Content|Instructions.txt"_list);
    ExpectNothingTemporaryLeft();
}

TEST_F(ExportTest, OutputSettingsGoOverTheJobOptions)
{
    const char* const cases[][2] = {
        {"UserSettings=false", ""},
        {"BleedChoice=0|BleedTopValue=1", ""},
        {"BleedChoice=1|BleedTopValue=0|BleedBottomValue=2.5|BleedInsideValue=-1|BleedOutsideValue=nan",
         "-document top=0 bottom=2.5"},
        {"BleedChoice=1|BleedInsideValue=3|BleedOutsideValue=4", "-document inside=3 outside=4"},
        {"BleedChoice=2|BleedTopValue=1", "+document"},
        {"BleedSlugArea=true|PrintSpreads=true", "+slug spreads"},
        {"BleedSlugArea=false|PrintSpreads=false", ""},
        {"PrinterMarks=true", "+crop +bleed +registration +bars +page"},
        {"PrinterMarks=false", "-crop -bleed -registration -bars -page"},
        {"PrinterMarks=true|ColorBars=false", "+crop +bleed +registration -bars +page"},
        {"Bleed=true|PrinterRegistration=false|PageInfo=1", "+bleed -registration -page"},
        {"MarkOffset=6|MarkWeight=0", "offset=6 weight=0.125"},
        {"MarkOffset=0|MarkWeight=2", "weight=0.5"},
        {"MarkOffset=inf|MarkWeight=1", "weight=0.25"},
        {"MarkWeight=thick", "weight=0.25"}};
    for (const auto& [settings, result] : cases) {
        const QString text = QString::fromLatin1(settings);
        ExportParty party;
        party.Export(MakeHopbox(text, text.split(QLatin1Char('|'))));
        ASSERT_EQ(party.host.commands.size(), 1u) << settings;
        EXPECT_EQ(Describe(*party.host.commands.front()), QString::fromLatin1(result)) << settings;
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
        GFileSystemBase::DropFolder(GetTemporary());
        ExportParty party;
        FakeDocument& document = party.host.documents.front();
        document.name = name;
        document.path = GetSandbox().GetPath("x/"_q) + name;
        party.Export(MakeHopbox(name, cWithPackage));
        const GPathName pdf = party.action.GetPDFPath();
        ASSERT_FALSE(pdf.IsEmpty()) << party.alerts.join(QLatin1Char(' ')).toStdString();
        EXPECT_EQ(pdf.GetParent().GetParent(), GetUserFolder());
        EXPECT_EQ(party.action.GetPackagePath().GetParent(), pdf.GetParent());
        EXPECT_EQ(List(GetTemporary()).size(), 6);  // two folders, the PDF, the package, content and report
        EXPECT_TRUE(ReadFile(pdf.GetNativePath()).startsWith("%PDF"));
        ExpectNothingTemporaryLeft();
    }
}

// Exports the document of the name that each line says, and answers with the PDF and the package.
CHILD_ROLE(ExportDocuments)
{
    const PlugInStore store;
    PlugInPreferences::Initialize();
    ExportParty party;
    for (GBuffer line = HearFromParent(); !line.isEmpty(); line = HearFromParent()) {
        party.host.documents.front().path = "/"_q + QString::fromUtf8(line);
        party.Export(arguments.at(0));
        const GPathName& package = party.action.GetPackagePath();
        SayToParent((party.action.GetPDFPath().GetNativePath() + "|"_q + package.GetNativePath()).toUtf8());
    }
    PlugInPreferences::Release();
    return 0;
}

TEST_F(ExportTest, TwoHostsThatExportTheSameDocumentAtOnceOverwriteNothing)
{
    const GString key = MakeHopbox("Press"_q, cWithPackage);
    ChildProcess one("ExportDocuments"_q, {key});
    ChildProcess other("ExportDocuments"_q, {key});
    for (const QString& line : "a|a|b|c"_list) {
        one.Say(line.toUtf8());
        other.Say(line.toUtf8());
        const QString answer = QString::fromUtf8(one.ReadLine());
        const QString otherAnswer = QString::fromUtf8(other.ReadLine());
        EXPECT_NE(answer, otherAnswer);
        for (const QString& paths : {answer, otherAnswer}) {
            const QFileInfo pdf(paths.section(QLatin1Char('|'), 0, 0));
            const QFileInfo package(paths.section(QLatin1Char('|'), 1));
            EXPECT_EQ(pdf.fileName(), line + ".pdf"_q);
            EXPECT_TRUE(ReadFile(pdf.filePath()).startsWith("%PDF"));
            EXPECT_EQ(package.filePath(), pdf.path() + "/"_q + line + " Folder"_q);
            EXPECT_TRUE(ReadTree(package.filePath()).contains("Instructions.txt"_q));
        }
    }
    one.Say("");
    other.Say("");
    EXPECT_EQ(one.WaitForExit(), 0);
    EXPECT_EQ(other.WaitForExit(), 0);
    EXPECT_EQ(List(GetUserFolder().GetChild("Press"_q)).filter("Instructions.txt"_q).size(), 8);
    ExpectNothingTemporaryLeft();
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
    EXPECT_EQ(send(107) + send(105) + send(106), QList<int>{11});
    // Neither a second run nor other properties get into a run; what failed once is no cancelling later.
    party.host.onRun = [&] {
        party.action.Receive(106, properties);
        party.action.Receive(107, {});
    };
    party.host.Make(HostOperation::RunPDFExport, HostAnswer::Fails);
    EXPECT_EQ(send(106), QList<int>{13});
    party.host.onRun = nullptr;
    EXPECT_EQ(send(106), QList<int>{12});
    party.host.Make(HostOperation::RunPDFExport, HostAnswer::Works);
    EXPECT_EQ(send(106), QList<int>{11});
    EXPECT_TRUE(party.action.GetErrorText().isEmpty());
    party.action.Detach(notes);
}

TEST_F(ExportTest, ABookWithoutAFileIsNamedByTheHost)
{
    ExportParty party(ExportKind::Book);
    party.host.books.front().path.clear();
    party.host.books.front().name = "Year 2026.indb"_q;
    party.Export(MakeHopbox("Press"_q, cWithPackage));
    EXPECT_EQ(party.action.GetPDFPath().GetLeaf(), "Year 2026.pdf"_q);
    EXPECT_EQ(party.action.GetPackagePath().GetLeaf(), "Year 2026 Folder"_q);
}

// A host whose menus answer while a command runs can bring up a second tool on the same action.
TEST_F(ExportTest, EachToolHandsOffItsOwnRunAlone)
{
    ExportParty party;
    const GString key = MakeHopbox("Press"_q);
    const GString otherKey = MakeHopbox("Proof"_q);
    GCPTSaveAsTool other(party.action, {});
    EXPECT_TRUE(other.SelectPDFSetting(otherKey, HopboxRegistry().GetRecord(otherKey).value()));
    int attempts = 0;
    party.host.onRun = [&] {
        ++attempts;
        other.Submit();
        party.host.CancelByUser();
    };
    party.Export(key);
    EXPECT_EQ(attempts, 1);
    EXPECT_EQ(party.alerts, QStringList{MakeAlert(cNobodyTakesIt)});
    EXPECT_TRUE(List(GetUserFolder()).filter("Proof"_q).isEmpty());

    // The cancelling still reaches the tool whose command runs.
    party.host.Make(HostOperation::RunPDFExport, HostAnswer::Fails);
    party.Export(key);
    EXPECT_EQ(party.alerts, QStringList());
    party.host.onRun = nullptr;
    party.host.Make(HostOperation::RunPDFExport, HostAnswer::Works);
    other.Submit();
    EXPECT_EQ(party.alerts, QStringList{MakeAlert(cNobodyTakesIt)});
}
