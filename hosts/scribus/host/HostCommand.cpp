#include "hosts/scribus/host/HostCommand.h"

#include "foundation/trace/GTrace.h"
#include "hosts/scribus/host/BookParts.h"
#include "hosts/scribus/host/HostBooks.h"
#include "hosts/scribus/host/HostDocuments.h"
#include "hosts/scribus/host/ScribusHost.h"
#include "hosts/scribus/pdf/PdfExport.h"
#include "joboptions/JobOptions.h"

#include <QJsonObject>

#include <array>

struct HostCommand::Orders
{
    PdfSettings settings;
    QString output;
    ScribusHost::DocumentPtr document;
    FileStamp stamp;  // of the document, when the pages were chosen
    QVector<int> pages;
    BookOrders book;
    QJsonObject report;
    ScribusHost* host = nullptr;
};

namespace
{
using OrdersPtr = std::shared_ptr<HostCommand::Orders>;

QString GetPath(const IDFile& file)
{
    return FileUtils::SysFileToPMString(file).GetString();
}

// Where each setting goes, in the order of its kind.
constexpr std::array cSwitches = {&PdfSettings::usesDocumentBleed, &PdfSettings::includesSlug,
                                  &PdfSettings::cropMarks,         &PdfSettings::bleedMarks,
                                  &PdfSettings::registrationMarks, &PdfSettings::colorBars,
                                  &PdfSettings::pageInformation};
static_assert(cSwitches.size() == cPDFSwitchCount);

constexpr std::array cLengths = {&PdfSettings::bleedTop,    &PdfSettings::bleedBottom,
                                 &PdfSettings::bleedInside, &PdfSettings::bleedOutside,
                                 &PdfSettings::markOffset,  &PdfSettings::markWeight};
static_assert(cLengths.size() == cPDFLengthCount);

template <class Interface>
class Part : public HostObject<Interface>
{
public:
    explicit Part(const OrdersPtr& orders) : mOrders(orders) {}

protected:
    OrdersPtr mOrders;
};

class Preferences : public Part<IPDFExportPreferences>
{
public:
    using Part::Part;

    ErrorCode ReadJobOptions(const IDFile& file) override
    {
        JobOptions options;
        const GResult result =
            options.Read(GetPath(file))
                .Then([&] { return PdfSettings::Make(options, mOrders->settings); })
                .Within(QStringLiteral("The job options \"%1\" can't be used: ").arg(GetPath(file)),
                        QStringLiteral("."));
        if (result.HasSucceeded())
            return cSuccess;
        mOrders->host->SetLastFailure(result.GetReason());
        GTrace::Error(QStringLiteral("IPDFExportPreferences::ReadJobOptions"), result.GetReason());
        return cFailure;
    }

    void SetSwitch(PDFSwitch setting, bool isOn) override
    {
        mOrders->settings.*cSwitches.at(static_cast<size_t>(setting)) = isOn;
    }

    void SetLength(PDFLength setting, double points) override
    {
        mOrders->settings.*cLengths.at(static_cast<size_t>(setting)) = points;
    }

    int32_t GetReaderSpreads() const override { return mOrders->settings.readerSpreads; }
    void SetReaderSpreads(int32_t spreads) override { mOrders->settings.readerSpreads = spreads; }
};

class FileData : public Part<ISystemFileData>
{
public:
    using Part::Part;
    void SetFile(const IDFile& file) override { mOrders->output = GetPath(file); }
};

class OutputPages : public Part<IOutputPages>
{
public:
    using Part::Part;

    // Spreads are asked for by the preferences already.
    void SetPages(const UIDList& pages, bool) override
    {
        mOrders->document = mOrders->host->FindDocument(pages.GetDataBase());
        if (mOrders->document != nullptr)
            mOrders->stamp = mOrders->document->GetStamp();
        mOrders->pages.clear();
        for (int i = 0; i < pages.Length(); ++i)
            mOrders->pages.append(HostDocuments::GetPageIndex(pages[i]));
    }

    // Scribus gives the PDF the title that the document has.
    void SetName(const PMString&) override {}
};

class BookExportData : public Part<IBookExportData>
{
public:
    using Part::Part;

    void SetBook(const IBook& book) override
    {
        mOrders->book.title = HostBooks::GetBook(book).GetTitle();
        mOrders->book.isNumberedOn = HostBooks::GetBook(book).IsNumberedOn();
    }
    void SetDocuments(const IBookContent& documents) override
    {
        mOrders->book.documents = HostBooks::GetDocuments(documents);
    }
    void SetOutputFile(const IDFile& file) override { mOrders->output = GetPath(file); }
};

}  // namespace

HostPtr<ICommand> HostCommand::Make(ScribusHost& host, ClassID commandClass)
{
    const bool isKnown = commandClass == HostClassID::cPDFExportCommand ||
                         commandClass == HostClassID::cPDFPreferencesCommand ||
                         commandClass == HostClassID::cBookExportCommand;
    return isKnown ? MakeHostObject<HostCommand, ICommand>(host, commandClass) : HostPtr<ICommand>();
}

HostCommand::HostCommand(ScribusHost& host, ClassID commandClass)
    : mHost(host), mClass(commandClass), mOrders(std::make_shared<Orders>())
{
    mOrders->host = &host;
}

HostCommand::~HostCommand() = default;

HostPtr<IPDFExportPreferences> HostCommand::QueryPDFExportPreferences()
{
    if (mClass == HostClassID::cBookExportCommand)
        return {};
    return MakeHostObject<Preferences, IPDFExportPreferences>(mOrders);
}

HostPtr<ISystemFileData> HostCommand::QuerySystemFileData()
{
    if (mClass != HostClassID::cPDFExportCommand)
        return {};
    return MakeHostObject<FileData, ISystemFileData>(mOrders);
}

HostPtr<IOutputPages> HostCommand::QueryOutputPages()
{
    if (mClass != HostClassID::cPDFExportCommand)
        return {};
    return MakeHostObject<OutputPages, IOutputPages>(mOrders);
}

HostPtr<IBookExportData> HostCommand::QueryBookExportData()
{
    if (mClass != HostClassID::cBookExportCommand)
        return {};
    return MakeHostObject<BookExportData, IBookExportData>(mOrders);
}

ErrorCode HostCommand::Run()
{
    if (mClass == HostClassID::cPDFExportCommand)
        return ExportDocument();
    if (mClass == HostClassID::cBookExportCommand)
        return ExportBook();
    mHost.SetPdfSettings(mOrders->settings);
    return cSuccess;
}

void HostCommand::LogUnavailable() const
{
    const PdfSettings& settings =
        mClass == HostClassID::cBookExportCommand ? mHost.GetPdfSettings() : mOrders->settings;
    for (const QString& wish : settings.GetUnavailable())
        GTrace::Error(QStringLiteral("HostCommand::Run"),
                      QStringLiteral("Not available in this host: %1.").arg(wish));
}

ErrorCode HostCommand::ExportDocument()
{
    const auto work = [this](const ScribusHost::BeginStep& step) {
        if (mOrders->document == nullptr || mOrders->output.isEmpty())
            return GResult::Failure(QStringLiteral("The export was given no pages, or no file to write."));
        ScribusDocument& document = *mOrders->document;
        step(document.GetName());
        if (FileStamp::Of(document.GetContentPath()) != mOrders->stamp)
            return GResult::Failure(
                QStringLiteral("\"%1\" was changed or removed after its pages were chosen.")
                    .arg(document.GetContentPath()));
        PdfExport pdf(mHost.GetRunner(), mOrders->settings);
        const GResult result = pdf.ExportPages(document, mOrders->pages, mOrders->output);
        mOrders->report = pdf.GetReport();
        return result;
    };
    LogUnavailable();
    return Finish(mHost.RunCommand(QStringLiteral("Export PDF"), 1, work));
}

ErrorCode HostCommand::ExportBook()
{
    const auto work = [this](const ScribusHost::BeginStep& step) {
        const BookOrders& book = mOrders->book;
        BookParts parts(mHost, book.isNumberedOn);
        for (const QString& path : book.documents) {
            step(path);
            const GResult result = parts.Add(path);
            if (!result.HasSucceeded())
                return result;
        }
        if (parts.GetList().empty() || mOrders->output.isEmpty())
            return GResult::Failure(QStringLiteral("The book has no documents, or no file to write."));
        step(mOrders->output);
        PdfExport pdf(mHost.GetRunner(), mHost.GetPdfSettings());
        mOrders->report = parts.GetReport();
        return pdf.Join(parts.GetList(), book.title, mOrders->output);
    };
    LogUnavailable();
    return Finish(
        mHost.RunCommand(QStringLiteral("Export Book to PDF"), mOrders->book.documents.size() + 1, work));
}

ErrorCode HostCommand::Finish(ErrorCode result) const
{
    if (result == cSuccess)
        mHost.SetLastPDF(mOrders->output, mOrders->report);
    return result;
}
