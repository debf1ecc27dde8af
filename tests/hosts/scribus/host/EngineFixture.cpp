#include "EngineFixture.h"

#include "foundation/trace/GTrace.h"

#include <QColor>
#include <QImage>
#include <QProcess>

#include <unistd.h>

static void ApplySettings(IPackageCommand& package)
{
    const bool settings[] = {true, true, true, false, false, true, false, false};
    static_assert(std::size(settings) == cPackageSettingCount);
    for (int i = 0; i < cPackageSettingCount; ++i)
        package.SetSetting(static_cast<PackageSetting>(i), settings[i]);
}

QByteArray RunProgram(const QString& program, const QStringList& arguments)
{
    QProcess process;
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(120000)) << program.toStdString();
    return process.readAllStandardOutput();
}

PdfFacts PdfFacts::Read(const QString& path)
{
    PdfFacts facts;
    const QString text = QString::fromUtf8(RunProgram("pdfinfo"_q, {"-box"_q, path}));
    for (const QString& line : text.split(QLatin1Char('\n'))) {
        const QString key = line.section(QLatin1Char(':'), 0, 0);
        const QString value = line.section(QLatin1Char(':'), 1).simplified();
        const QStringList numbers = value.split(QLatin1Char(' '));
        if (key == QLatin1String("Pages"))
            facts.pageCount = value.toInt();
        else if (key == QLatin1String("PDF version"))
            facts.version = value;
        else if (key.endsWith(QLatin1String("Box")) && numbers.size() == 4)
            facts.boxes[key] = QRectF(QPointF(numbers[0].toDouble(), numbers[1].toDouble()),
                                      QPointF(numbers[2].toDouble(), numbers[3].toDouble()));
    }
    return facts;
}

ScribusSetup EngineFixture::GetSetup()
{
    ScribusSetup setup;
    setup.home = QDir::tempPath() + QStringLiteral("/layout-host-tests-%1").arg(::getuid());
    return setup;
}

EngineFixture::EngineFixture() : mLog(std::make_shared<LogRecorder>())
{
    GTrace::SetLogger(mLog);
    QDir().mkpath(mSandbox.GetPath(QStringLiteral("out")));
    RestartHost(GetSetup());
}

EngineFixture::~EngineFixture()
{
    mHost.reset();
    GTrace::SetLogger(nullptr);
}

QString EngineFixture::MakeDocument(const QString& name, int pageCount, const QString& objects, int width)
{
    QString pages;
    for (int i = 0; i < pageCount; ++i)
        pages += QStringLiteral(
                     "<PAGE NUM=\"%1\" PAGEXPOS=\"100\" PAGEYPOS=\"%2\" PAGEWIDTH=\"400\" "
                     "PAGEHEIGHT=\"300\" MNAM=\"Normal\" Size=\"Custom\" LEFT=\"0\"/>\n")
                     .arg(i)
                     .arg(20 + 340 * i);
    const QString text =
        QStringLiteral(
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<SCRIBUSUTF8NEW Version=\"1.5.8\">\n"
            "<DOCUMENT ANZPAGES=\"%1\" PAGEWIDTH=\"400\" PAGEHEIGHT=\"300\" UNITS=\"0\" BOOK=\"0\" "
            "BleedTop=\"5\" BleedLeft=\"6\" BleedRight=\"7\" BleedBottom=\"8\" FIRSTNUM=\"1\" "
            "DFONT=\"DejaVu Sans Book\" DSIZE=\"12\" ALAYER=\"0\" TITLE=\"A title\" "
            "ScratchLeft=\"100\" ScratchTop=\"20\" GapVertical=\"40\">\n"
            "<COLOR NAME=\"Black\" SPACE=\"CMYK\" C=\"0\" M=\"0\" Y=\"0\" K=\"100\"/>\n"
            "<LAYERS NUMMER=\"0\" LEVEL=\"0\" NAME=\"Background\" SICHTBAR=\"1\" DRUCKEN=\"1\" "
            "EDIT=\"1\" TRANS=\"1\" BLEND=\"0\"/>\n"
            "<MASTERPAGE NUM=\"0\" PAGEXPOS=\"100\" PAGEYPOS=\"20\" PAGEWIDTH=\"400\" "
            "PAGEHEIGHT=\"300\" NAM=\"Normal\" MNAM=\"\" Size=\"Custom\" LEFT=\"0\"/>\n%2%3"
            "</DOCUMENT>\n</SCRIBUSUTF8NEW>\n")
            .arg(pageCount)
            .arg(pages, objects);
    const QString path = mSandbox.GetPath(name);
    const QByteArray pageWidth = "PAGEWIDTH=\"" + QByteArray::number(width) + '"';
    EXPECT_TRUE(WriteFile(path, text.toUtf8().replace("PAGEWIDTH=\"400\"", pageWidth)));
    return path;
}

QString EngineFixture::MakeImageFrame(const QString& link, const QString& attributes)
{
    return QStringLiteral(
               "<PAGEOBJECT XPOS=\"110\" YPOS=\"30\" OwnPage=\"0\" ItemID=\"7\" PTYPE=\"2\" "
               "WIDTH=\"100\" HEIGHT=\"100\" FRTYPE=\"0\" CLIPEDIT=\"0\" PWIDTH=\"0\" PCOLOR=\"None\" "
               "PCOLOR2=\"None\" LOCALSCX=\"1\" LOCALSCY=\"1\" PICART=\"1\" SCALETYPE=\"0\" RATIO=\"1\" "
               "LAYER=\"0\" NUMO=\"0\" %2 PFILE=\"%1\"/>\n")
        .arg(link.toHtmlEscaped(), attributes);
}

QString EngineFixture::MakeText(const QString& font)
{
    return QStringLiteral(
               "<PAGEOBJECT XPOS=\"110\" YPOS=\"30\" OwnPage=\"0\" ItemID=\"70\" PTYPE=\"4\" WIDTH=\"100\" "
               "HEIGHT=\"100\" FRTYPE=\"0\" CLIPEDIT=\"0\" PWIDTH=\"0\" PCOLOR=\"None\" PCOLOR2=\"None\" "
               "LAYER=\"0\" NUMO=\"0\" COLUMNS=\"1\" path=\"M0 0 L100 0 L100 100 L0 100 L0 0 Z\" "
               "copath=\"M0 0 L100 0 L100 100 L0 100 L0 0 Z\"><StoryText><DefaultStyle LINESPMode=\"1\"/>"
               "<ITEXT CH=\"Some words\" FONT=\"%1\" FONTSIZE=\"12\" FCOLOR=\"Black\" FSHADE=\"100\" "
               "SCALEH=\"100\" SCALEV=\"100\"/><trail LINESPMode=\"1\"/></StoryText></PAGEOBJECT>\n")
        .arg(font);
}

QString EngineFixture::MakeImage(const QString& name, int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            image.setPixelColor(x, y, QColor((x * 37 + y) % 256, (y * 11) % 256, (x ^ y) % 256));
    const QString path = mSandbox.GetPath(name);
    EXPECT_TRUE(QDir().mkpath(QFileInfo(path).path()) && image.save(path));
    return path;
}

void EngineFixture::MakeFont(const QString& name)
{
    QByteArray font = ReadFile("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf"_q);
    font.replace("DejaVu", "DejaXu").replace(QByteArray("D\0e\0j\0a\0V", 9), QByteArray("D\0e\0j\0a\0X", 9));
    EXPECT_TRUE(WriteFile(mSandbox.GetPath(name), font));
}

QString EngineFixture::MoveAway(const QString& folder, const QStringList& originals)
{
    for (const QString& original : originals)
        EXPECT_TRUE(QDir(mSandbox.GetPath(original)).removeRecursively());
    EXPECT_TRUE(QDir().rename(folder, mSandbox.GetPath("moved"_q)));
    return mSandbox.GetPath("moved/"_q);
}

QStringList EngineFixture::GetLinks(const QString& path, const QString& folder)
{
    Open(path);
    QStringList links;
    for (const DocumentLink& link : mHost->GetActiveDocument()->GetInfo()->links)
        links.append(QDir(folder).relativeFilePath(link.path) + (link.isMissing ? " MISSING"_q : QString()));
    return links;
}

void EngineFixture::RestartHost(const ScribusSetup& setup)
{
    mHost = std::make_unique<ScribusHost>(setup);
    mHost->SetFrontend(&mFrontend);
}

void EngineFixture::RestartHost(const QByteArray& program)
{
    ScribusSetup setup = GetSetup();
    setup.scribus = mSandbox.GetPath("scribus"_q);
    EXPECT_TRUE(ReadFile(setup.scribus) == program || WriteProgram(setup.scribus, program));
    RestartHost(setup);
}

QString EngineFixture::MakeJobOptions(const QByteArray& settings)
{
    const QString path = mSandbox.GetPath(QStringLiteral("test.joboptions"));
    EXPECT_TRUE(WriteFile(path, "<< " + settings + " >> setdistillerparams"));
    return path;
}

ErrorCode EngineFixture::Export(const QString& output, const QByteArray& settings, const QString& range,
                                const Adjust& adjust)
{
    const HostPtr<ICommand> command = mHost->CreateCommand(HostClassID::cPDFExportCommand);
    const HostPtr<IPDFExportPreferences> preferences = command->QueryPDFExportPreferences();
    EXPECT_EQ(preferences->ReadJobOptions(IDFile(PMString(MakeJobOptions(settings)))), cSuccess);
    if (adjust)
        adjust(*preferences);
    const HostPtr<IDocument> document = mHost->QueryLayoutUtils()->QueryFrontDocument();
    const HostPtr<IPageList> list = document->QueryPageList();
    UIDList pages(document->GetDataBase());
    for (int i = 0; range.isEmpty() && i < list->GetPageCount(); ++i)
        pages.Append(list->GetNthPage(i));
    if (!range.isEmpty() && list->GetPageUIDs(PMString(range), pages) != cSuccess)
        return cFailure;
    command->QuerySystemFileData()->SetFile(IDFile(PMString(output)));
    command->QueryOutputPages()->SetPages(pages, false);
    return mHost->ProcessCommand(*command);
}

ErrorCode EngineFixture::ExportBook(const QString& output, const QByteArray& settings)
{
    const HostPtr<ICommand> preferences = mHost->CreateCommand(HostClassID::cPDFPreferencesCommand);
    EXPECT_EQ(
        preferences->QueryPDFExportPreferences()->ReadJobOptions(IDFile(PMString(MakeJobOptions(settings)))),
        cSuccess);
    EXPECT_EQ(mHost->ProcessCommand(*preferences), cSuccess);
    const HostPtr<IBook> book = mHost->QuerySession()->QueryBookManager()->QueryActiveBook();
    const HostPtr<ICommand> command = mHost->CreateCommand(HostClassID::cBookExportCommand);
    const HostPtr<IBookExportData> data = command->QueryBookExportData();
    data->SetBook(*book);
    data->SetDocuments(*book->QueryContent());
    data->SetOutputFile(IDFile(PMString(output)));
    return mHost->ProcessCommand(*command);
}

ErrorCode EngineFixture::PackageDocument(const QString& folder)
{
    const HostPtr<IObjectModel> model = mHost->QueryObjectModel();
    const HostPtr<IDocumentPackageCommand> package = model->CreatePackageCommand();
    package->SetDocument(*mHost->QueryLayoutUtils()->QueryFrontDocument());
    package->SetTargetFolder(IDFile(PMString(folder)));
    ApplySettings(*package);
    if (package->Execute() != cSuccess)
        return cFailure;
    const int32_t report = model->CreatePackageReportCommand()->CreateReport(*package);
    return report == IPackageReportCommand::cReportWritten ? cSuccess : cFailure;
}

ErrorCode EngineFixture::PackageBook(const QString& folder)
{
    const HostPtr<IBookPackageCommand> package = mHost->QueryObjectModel()->CreateBookPackageCommand();
    package->SetBook(*mHost->QuerySession()->QueryBookManager()->QueryActiveBook());
    package->SetTargetFolder(IDFile(PMString(folder)));
    ApplySettings(*package);
    return package->Execute();
}

void EngineFixture::CountStarts()
{
    RestartHost("#!/bin/sh\necho >> '" + QFile::encodeName(mSandbox.GetPath("starts"_q)) +
                "'\nexec /usr/bin/scribus \"$@\"\n");
}

void EngineFixture::Open(const QString& path)
{
    const GResult opened = mHost->OpenDocument(path);
    ASSERT_TRUE(opened.HasSucceeded()) << opened.GetReason().toStdString();
}
