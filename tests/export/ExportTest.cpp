#include "ExportRun.h"
#include "Receiver.h"
#include "export/JobOptionsFolder.h"
#include "export/WorkFolder.h"
#include "foundation/system/PSystem.h"
#include "hopbox/HopboxFolder.h"
#include "hopbox/HopboxRegistry.h"
#include "tests/support/ChildProcess.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>

class ExportTest : public ExportFixture
{
protected:
    ExportTest() { GFileSystemBase::TryToRemoveFile(HopboxRegistry::GetPathName()); }

    // Makes a Hopbox as its owner does; gives its key.
    GString CreateHopbox(const QString& name, const QStringList& settings)
    {
        const QString jobOptions = GetSandbox().GetPath(QStringLiteral("a.joboptions"));
        EXPECT_TRUE(WriteFile(jobOptions, "<< /A 1 >>"));
        QStringList arguments = {QStringLiteral("create"), name, QStringLiteral("--job-options"), jobOptions,
                                 QStringLiteral("--json")};
        for (const QString& setting : settings)
            arguments << QStringLiteral("--setting") << setting;
        QProcess process;
        process.start(GetProgram("hopboxctl"), arguments);
        EXPECT_TRUE(process.waitForFinished());
        return QJsonDocument::fromJson(process.readAll()).object().value(QStringLiteral("Key")).toString();
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
        std::vector<GBuffer> keys;
        PlugInPrefModule(PlugInStore::GetFile()).GetGroupPreferences("SmartFileList", keys);
        EXPECT_EQ(keys.size(), 1u);
    }
};

TEST_F(ExportTest, FromAHopboxOfTheCommandLineToTheInboxOfARealReceiver)
{
    const QString name = QStringLiteral("Gr\u00F6\u00DFe 100% \u65E5\u672C");
    const GString key =
        CreateHopbox(name, {QStringLiteral("BleedChoice=1"), QStringLiteral("BleedTopValue=8.5"),
                            QStringLiteral("Trim=true"), QStringLiteral("PrintSpreads=true"),
                            QStringLiteral("IncludeFilePackage=true")});
    ASSERT_FALSE(key.isEmpty());
    const QString inbox = GetSandbox().GetPath(QStringLiteral("Inbox"));
    Receiver receiver(inbox, 2);
    ExportParty party;
    {
        GCPTSaveAsTool tool(party.action, {});
        ASSERT_TRUE(tool.SelectPDFSetting(key));
        tool.SetPageRange(QStringLiteral("3,1-2,3"));
        tool.Submit();
    }
    EXPECT_TRUE(party.alerts.isEmpty()) << party.alerts.join(QLatin1Char(' ')).toStdString();
    EXPECT_TRUE(party.host.GetUnreleased().isEmpty());

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

    const GPathName folder = GetUserFolder().GetChild(name);
    const GPathName pdf = folder.GetChild(QStringLiteral("Gr\u00F6\u00DFe v1.2.pdf"));
    EXPECT_EQ(party.action.GetPDFPath(), pdf);
    const QString report = QStringLiteral("Gr\u00F6\u00DFe v1.2 Folder/Instructions.txt");
    EXPECT_EQ(List(folder),
              (QStringList{QStringLiteral("Gr\u00F6\u00DFe v1.2 Folder/"), report, pdf.GetLeaf()}));
    ExpectNothingTemporaryLeft();

    const QList<QJsonObject> jobs = receiver.GetJobs();
    ASSERT_EQ(jobs.size(), 2);
    const QJsonObject ticket = {{QStringLiteral("UserName"), PSystem::GetLogonName()},
                                {QStringLiteral("JobPath"), pdf.GetNativePath()},
                                {QStringLiteral("PrinterName"), name},
                                {QStringLiteral("PortName"), QStringLiteral("10987")},
                                {QStringLiteral("CopyCount"), 1},
                                {QStringLiteral("PrinterID"), QString()},
                                {QStringLiteral("kind"), 145},
                                {QStringLiteral("valid"), true}};
    for (const QString& field : ticket.keys())
        EXPECT_EQ(jobs.at(0).value(field), ticket.value(field)) << field.toStdString();
    EXPECT_EQ(ReadFile(jobs.at(0).value(QStringLiteral("saved")).toString()), ReadFile(pdf.GetNativePath()));
    EXPECT_TRUE(ReadFile(pdf.GetNativePath()).startsWith("%PDF"));
    const QString package = jobs.at(1).value(QStringLiteral("JobPath")).toString();
    EXPECT_TRUE(package.startsWith(QLatin1String("file:///")) &&
                package.endsWith(QLatin1String("/Gr%C3%B6%C3%9Fe%20v1.2%20Folder?isinddpkg=true")))
        << package.toStdString();
    EXPECT_TRUE(List(GPathName(inbox)).contains(report));
}

TEST_F(ExportTest, AFilePackageIsAURLForTheBuildsThatTakeIt)
{
    const GPathName package = GetTemporary().GetChild(QStringLiteral("50% #1 & \u65E5 Folder"));
    const GString path = package.GetNativePath();
    for (const int32_t build : {637640, 666, 2147483647}) {
        const GString url = GCPTSaveAsTool::GetPackageLocation(package, build);
        EXPECT_TRUE(url.endsWith(QLatin1String("/50%25%20%231%20&%20%E6%97%A5%20Folder?isinddpkg=true")))
            << url.toStdString();
    }
    for (const int32_t build : {637639, 667, 665, 0, -1})
        EXPECT_EQ(GCPTSaveAsTool::GetPackageLocation(package, build), path) << build;
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
    const QStringList names = {QStringLiteral("../../../evil"),
                               QStringLiteral(".."),
                               QStringLiteral("."),
                               QStringLiteral("..\\..\\evil"),
                               QStringLiteral("/etc/evil"),
                               QStringLiteral("C:\\evil"),
                               QStringLiteral("CON"),
                               QStringLiteral("nul.indd"),
                               QStringLiteral("a. . "),
                               QStringLiteral("a:b*?<>|\"c"),
                               QStringLiteral("\u202Efdp.exe\u0007\t"),
                               QString(300, QLatin1Char('x')),
                               QString(300, QChar(0x65E5)),
                               QStringLiteral("half \xD83D pair"),
                               QStringLiteral("\U0001F4E6 \u0627\u0644")};
    for (const QString& name : names) {
        SCOPED_TRACE(name.toStdString());
        GFileSystemBase::TryToRemoveFolder(GetTemporary());
        ExportParty party;
        FakeDocument& document = party.host.documents.front();
        document.name = name;
        document.path = GetSandbox().GetPath(QStringLiteral("x/")) + name;
        party.Export(MakeHopbox(name));
        const GPathName pdf = party.action.GetPDFPath();
        ASSERT_FALSE(pdf.IsEmpty()) << party.alerts.join(QLatin1Char(' ')).toStdString();
        EXPECT_EQ(pdf.GetParent().GetParent(), GetUserFolder());
        EXPECT_EQ(List(GetTemporary()).size(), 3);
        EXPECT_TRUE(ReadFile(pdf.GetNativePath()).startsWith("%PDF"));
        ExpectNothingTemporaryLeft();
    }
}

// Reserves a name for each document that it is told of, exports it, and says where both are.
CHILD_ROLE(ExportDocuments)
{
    const PlugInStore store;
    PlugInPreferences::Initialize();
    ExportParty party;
    for (GBuffer name = HearFromParent(); !name.isEmpty(); name = HearFromParent()) {
        ReservedOutput output(WorkFolder::GetPath(QStringLiteral("Reserved")), QString::fromUtf8(name),
                              ReservedOutput::Kind::File);
        SayToParent(output.GetPathName().GetNativePath().toUtf8());
        output.Keep();
        party.host.documents.front().path = QStringLiteral("/") + QString::fromUtf8(name);
        party.Export(arguments.at(0));
        SayToParent(party.action.GetPDFPath().GetNativePath().toUtf8());
    }
    PlugInPreferences::Release();
    return 0;
}

TEST_F(ExportTest, TwoHostsThatExportTheSameDocumentAtOnceOverwriteNothing)
{
    const GString key = MakeHopbox(QStringLiteral("Press"));
    WorkFolder::Make(WorkFolder::GetPath(QStringLiteral("Reserved")));
    ChildProcess one(QStringLiteral("ExportDocuments"), {key});
    ChildProcess other(QStringLiteral("ExportDocuments"), {key});
    for (const QString& name :
         {QStringLiteral("a"), QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}) {
        one.Say(name.toUtf8());
        other.Say(name.toUtf8());
        EXPECT_NE(one.ReadLine(), other.ReadLine());
        for (ChildProcess* host : {&one, &other}) {
            const QString file = QString::fromUtf8(host->ReadLine());
            EXPECT_EQ(QFileInfo(file).fileName(), name + QStringLiteral(".pdf"));
            EXPECT_TRUE(ReadFile(file).startsWith("%PDF"));
        }
    }
    one.Say("");
    other.Say("");
    EXPECT_EQ(one.WaitForExit(), 0);
    EXPECT_EQ(other.WaitForExit(), 0);
    EXPECT_EQ(List(GetUserFolder().GetChild(QStringLiteral("Press"))).filter(QStringLiteral(".pdf")).size(),
              8);
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
    properties.hopboxKey = MakeHopbox(QStringLiteral("Press"));
    properties.hopboxName = QStringLiteral("Press");
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
    properties.includesFilePackage = true;
    party.host.Make(HostOperation::CreateReport, HostAnswer::Fails);
    EXPECT_EQ(send(106), QList<int>{12});
    properties.includesFilePackage = false;
    EXPECT_EQ(send(106), QList<int>{11});
    EXPECT_TRUE(party.action.GetErrorText().isEmpty());
    party.action.Detach(notes);
}
