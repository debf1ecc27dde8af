#include "plugin/boundary/TableCommands.h"

#include "plugin/boundary/TableDocuments.h"
#include "plugin/boundary/TableObject.h"

namespace
{
using Table = hopbox_host_table;

// The settings' numbers at the boundary are their places in the enumerations of the classes.
static_assert(static_cast<int>(PDFSwitch::PageInformation) == HOPBOX_PAGE_INFORMATION);
static_assert(cPDFSwitchCount == HOPBOX_SWITCHES);
static_assert(static_cast<int>(PDFLength::MarkWeight) == HOPBOX_MARK_WEIGHT);
static_assert(cPDFLengthCount == HOPBOX_LENGTHS);
static_assert(static_cast<int>(PackageSetting::DocumentHyphenationOnly) ==
              HOPBOX_PACKAGE_DOCUMENT_HYPHENATION);
static_assert(cPackageSettingCount == HOPBOX_PACKAGE_SETTINGS);

class Preferences final : public TableObject<IPDFExportPreferences>
{
public:
    using TableObject::TableObject;

    ErrorCode ReadJobOptions(const IDFile& file) override
    {
        const Boundary::PassedText path(FileUtils::SysFileToPMString(file).GetString());
        return CheckIsSupported(Call(&Table::read_job_options, &path.Get()));
    }

    void SetSwitch(PDFSwitch setting, bool isOn) override
    {
        Wish(&Table::set_switch, static_cast<int32_t>(setting), int32_t(isOn));
    }

    void SetLength(PDFLength setting, double points) override
    {
        Wish(&Table::set_length, static_cast<int32_t>(setting), points);
    }

    int32_t GetReaderSpreads() const override
    {
        return Ask(&Table::get_spreads, false, false) ? cReaderSpreadsOn : cReaderSpreadsOff;
    }

    void SetReaderSpreads(int32_t spreads) override
    {
        Wish(&Table::set_spreads, int32_t(spreads == cReaderSpreadsOn));
    }
};

// What a command writes to.
template <class Interface>
class OutputObject : public TableObject<Interface>
{
public:
    using TableObject<Interface>::TableObject;

protected:
    void SetOutput(const IDFile& file) const
    {
        const Boundary::PassedText path(FileUtils::SysFileToPMString(file).GetString());
        this->Require(&Table::set_output, &path.Get());
    }
};

class FileData final : public OutputObject<ISystemFileData>
{
public:
    using OutputObject::OutputObject;
    void SetFile(const IDFile& file) override { SetOutput(file); }
};

class OutputPages final : public TableObject<IOutputPages>
{
public:
    using TableObject::TableObject;

    void SetPages(const UIDList& pages, bool isSpreads) override
    {
        std::vector<uint32_t> numbers;
        for (int index = 0; index < pages.Length(); ++index)
            numbers.push_back(pages[index]);
        const hopbox_handle document = TableDocuments::GetHandle(pages.GetDataBase());
        Require(&Table::set_pages, document, static_cast<const uint32_t*>(numbers.data()), numbers.size(),
                int32_t(isSpreads));
    }

    void SetName(const PMString& name) override
    {
        const Boundary::PassedText text(name.GetString());
        Wish(&Table::set_name, &text.Get());
    }
};

class BookData final : public OutputObject<IBookExportData>
{
public:
    using OutputObject::OutputObject;

    void SetBook(const IBook& book) override { Require(&Table::set_book, TableDocuments::GetHandle(book)); }
    void SetDocuments(const IBookContent&) override {}  // all of the book's
    void SetOutputFile(const IDFile& file) override { SetOutput(file); }
};

class Command final : public TableObject<ICommand>
{
public:
    Command(const TableHost& host, const TableHandlePtr& handle, int32_t kind)
        : TableObject(host, handle), mKind(kind)
    {
    }

    HostPtr<IPDFExportPreferences> QueryPDFExportPreferences() override
    {
        return Give<Preferences, IPDFExportPreferences>(mKind != HOPBOX_EXPORT_BOOK);
    }
    HostPtr<ISystemFileData> QuerySystemFileData() override
    {
        return Give<FileData, ISystemFileData>(mKind == HOPBOX_EXPORT_DOCUMENT &&
                                               mHost.Has(&Table::set_output));
    }
    HostPtr<IOutputPages> QueryOutputPages() override
    {
        return Give<OutputPages, IOutputPages>(mKind == HOPBOX_EXPORT_DOCUMENT);
    }
    HostPtr<IBookExportData> QueryBookExportData() override
    {
        return Give<BookData, IBookExportData>(mKind == HOPBOX_EXPORT_BOOK);
    }

    ErrorCode Run() const { return mHost.Run(GetHandle()); }

private:
    template <class Part, class Interface>
    HostPtr<Interface> Give(bool hasPart)
    {
        return hasPart ? MakeTableObject<Part, Interface>(mHost, mHandle) : HostPtr<Interface>();
    }

    int32_t mKind;
};

template <class Interface>
class Package : public OutputObject<Interface>
{
public:
    using OutputObject<Interface>::OutputObject;

    void SetTargetFolder(const IDFile& folder) override { this->SetOutput(folder); }
    void SetSetting(PackageSetting setting, bool isOn) override
    {
        this->Wish(&Table::set_package_setting, static_cast<int32_t>(setting), int32_t(isOn));
    }
    ErrorCode Execute() override { return this->mHost.Run(this->GetHandle()); }
};

class DocumentPackage final : public Package<IDocumentPackageCommand>
{
public:
    using Package::Package;
    void SetDocument(const IDocument& document) override
    {
        Require(&Table::set_document, TableDocuments::GetHandle(document));
    }
};

class BookPackage final : public Package<IBookPackageCommand>
{
public:
    using Package::Package;
    void SetBook(const IBook& book) override { Require(&Table::set_book, TableDocuments::GetHandle(book)); }
};

class Report final : public TableObject<IPackageReportCommand>
{
public:
    using TableObject::TableObject;

    int32_t CreateReport(const IDocumentPackageCommand& package) override
    {
        const hopbox_handle handle = static_cast<const DocumentPackage&>(package).GetHandle();
        return CheckIsSupported(mHost.Call(&Table::write_report, handle)) == HOPBOX_OK ? cReportWritten : 0;
    }
};

class ObjectModel final : public TableObject<IObjectModel>
{
public:
    using TableObject::TableObject;

    HostPtr<IDocumentPackageCommand> CreatePackageCommand() const override
    {
        return TakeObject<DocumentPackage, IDocumentPackageCommand>(mHost, &Table::create_command,
                                                                    int32_t(HOPBOX_PACKAGE_DOCUMENT));
    }
    HostPtr<IPackageReportCommand> CreatePackageReportCommand() const override
    {
        return MakeTableObject<Report, IPackageReportCommand>(mHost);
    }
    HostPtr<IBookPackageCommand> CreateBookPackageCommand() const override
    {
        return TakeObject<BookPackage, IBookPackageCommand>(mHost, &Table::create_command,
                                                            int32_t(HOPBOX_PACKAGE_BOOK));
    }
};

int32_t GetKind(ClassID command)
{
    switch (command) {
        case HostClassID::cPDFExportCommand:
            return HOPBOX_EXPORT_DOCUMENT;
        case HostClassID::cPDFPreferencesCommand:
            return HOPBOX_PDF_PREFERENCES;
        case HostClassID::cBookExportCommand:
            return HOPBOX_EXPORT_BOOK;
        default:
            return 0;
    }
}
}  // namespace

HostPtr<ICommand> TableCommands::Make(const TableHost& host, ClassID command)
{
    const int32_t kind = GetKind(command);
    hopbox_handle handle = 0;
    if (kind == 0 || host.Call(&Table::create_command, kind, &handle) != HOPBOX_OK || handle == 0)
        return {};
    return MakeTableObject<Command, ICommand>(host, std::make_shared<const TableHandle>(host, handle), kind);
}

ErrorCode TableCommands::Run(const ICommand& command)
{
    return static_cast<const Command&>(command).Run();
}

HostPtr<IObjectModel> TableCommands::MakeObjectModel(const TableHost& host)
{
    return MakeTableObject<ObjectModel, IObjectModel>(host);
}
