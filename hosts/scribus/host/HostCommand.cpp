#include "hosts/scribus/host/HostCommand.h"

#include "foundation/trace/GTrace.h"
#include "hosts/scribus/host/HostBooks.h"
#include "hosts/scribus/host/HostDocuments.h"
#include "hosts/scribus/host/ScribusHost.h"
#include "hosts/scribus/pdf/PdfExport.h"
#include "joboptions/JobOptions.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonObject>
#include <QMap>

struct HostCommand::Orders
{
    PdfSettings settings;
    QString output;
    ScribusHost::DocumentPtr document;
    FileStamp stamp;  // of the document, when the pages were chosen
    QVector<int> pages;
    QStringList bookDocuments;
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
        QString error;
        if (options.Read(GetPath(file), error) && PdfSettings::Make(options, mOrders->settings, error))
            return cSuccess;
        const QString reason =
            QStringLiteral("The job options \"%1\" can't be used: %2.").arg(GetPath(file), error);
        mOrders->host->SetLastFailure(reason);
        GTrace::Error(QStringLiteral("IPDFExportPreferences::ReadJobOptions"), reason);
        return cFailure;
    }

    void SetSwitch(PDFSwitch setting, bool isOn) override
    {
        PdfSettings& settings = mOrders->settings;
        switch (setting) {
            case PDFSwitch::UseDocumentBleed:
                settings.usesDocumentBleed = isOn;
                break;
            case PDFSwitch::IncludeSlug:
                settings.includesSlug = isOn;
                break;
            case PDFSwitch::CropMarks:
                settings.cropMarks = isOn;
                break;
            case PDFSwitch::BleedMarks:
                settings.bleedMarks = isOn;
                break;
            case PDFSwitch::RegistrationMarks:
                settings.registrationMarks = isOn;
                break;
            case PDFSwitch::ColorBars:
                settings.colorBars = isOn;
                break;
            case PDFSwitch::PageInformation:
                settings.pageInformation = isOn;
                break;
        }
    }

    void SetLength(PDFLength setting, double points) override
    {
        PdfSettings& settings = mOrders->settings;
        switch (setting) {
            case PDFLength::BleedTop:
                settings.bleedTop = points;
                break;
            case PDFLength::BleedBottom:
                settings.bleedBottom = points;
                break;
            case PDFLength::BleedInside:
                settings.bleedInside = points;
                break;
            case PDFLength::BleedOutside:
                settings.bleedOutside = points;
                break;
            case PDFLength::MarkOffset:
                settings.markOffset = points;
                break;
            case PDFLength::MarkWeight:
                settings.markWeight = points;
                break;
        }
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

    // The documents say all that this host needs of the book.
    void SetBook(const IBook&) override {}
    void SetDocuments(const IBookContent& documents) override
    {
        mOrders->bookDocuments = HostBooks::GetDocuments(documents);
    }
    void SetOutputFile(const IDFile& file) override { mOrders->output = GetPath(file); }
};

// All pages of a document, in order.
QVector<int> GetAllPages(ScribusDocument& document)
{
    QVector<int> pages;
    const DocumentInfo* info = document.GetInfo();
    for (int i = 0; info != nullptr && i < info->pages.size(); ++i)
        pages.append(i);
    return pages;
}

// The PDF of each document of a book; a document that stands in it twice is exported once. The files go with
// this object.
class BookParts
{
public:
    explicit BookParts(ScribusHost& host) : mHost(host) {}

    ~BookParts()
    {
        for (const QString& part : mParts)
            QFile::remove(part);
    }

    CommandResult Add(const QString& path)
    {
        if (!mParts.contains(path)) {
            PdfExport work(mHost.GetRunner(), mHost.GetPdfSettings());
            const ScribusHost::DocumentPtr document = mHost.TakeDocument(path);
            const QString part = mHost.GetRunner().MakeScratchPath(QStringLiteral("pdf"));
            const CommandResult result = work.ExportPages(*document, GetAllPages(*document), part);
            if (!result.HasSucceeded())
                return result;
            mReports.append(work.GetReport());
            mParts.insert(path, part);
        }
        mList.append(mParts.value(path));
        return CommandResult::Success();
    }

    const QStringList& GetList() const { return mList; }

    // The settings once, what the PDFs hold one after the other.
    QJsonObject GetReport() const
    {
        QJsonObject whole = mReports.isEmpty() ? QJsonObject() : mReports.first();
        for (const char* key : {"images", "fonts", "notes"}) {
            QJsonArray all;
            for (const QJsonObject& report : mReports) {
                for (const QJsonValue& item : report.value(QLatin1String(key)).toArray())
                    all.append(item);
            }
            whole.insert(QLatin1String(key), all);
        }
        return whole;
    }

private:
    ScribusHost& mHost;
    QMap<QString, QString> mParts;  // by document
    QStringList mList;              // in the book's order
    QVector<QJsonObject> mReports;
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
            return CommandResult::Failure(
                QStringLiteral("The export was given no pages, or no file to write."));
        ScribusDocument& document = *mOrders->document;
        step(document.GetName());
        if (FileStamp::Take(document.GetContentPath()) != mOrders->stamp)
            return CommandResult::Failure(
                QStringLiteral("\"%1\" was changed or removed after its pages were chosen.")
                    .arg(document.GetContentPath()));
        PdfExport pdf(mHost.GetRunner(), mOrders->settings);
        const CommandResult result = pdf.ExportPages(document, mOrders->pages, mOrders->output);
        mOrders->report = pdf.GetReport();
        return result;
    };
    LogUnavailable();
    return Finish(mHost.RunCommand(QStringLiteral("Export PDF"), 1, work));
}

ErrorCode HostCommand::ExportBook()
{
    const auto work = [this](const ScribusHost::BeginStep& step) {
        BookParts parts(mHost);
        for (const QString& path : mOrders->bookDocuments) {
            step(path);
            const CommandResult result = parts.Add(path);
            if (!result.HasSucceeded())
                return result;
        }
        if (parts.GetList().isEmpty() || mOrders->output.isEmpty())
            return CommandResult::Failure(QStringLiteral("The book has no documents, or no file to write."));
        step(mOrders->output);
        PdfExport pdf(mHost.GetRunner(), mHost.GetPdfSettings());
        mOrders->report = parts.GetReport();
        return pdf.Join(parts.GetList(), mOrders->output);
    };
    LogUnavailable();
    return Finish(
        mHost.RunCommand(QStringLiteral("Export Book to PDF"), mOrders->bookDocuments.size() + 1, work));
}

ErrorCode HostCommand::Finish(ErrorCode result) const
{
    if (result == cSuccess)
        mHost.SetLastPDF(mOrders->output, mOrders->report);
    return result;
}
