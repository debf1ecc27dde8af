#include "plugin/boundary/HostTableCommands.h"

#include "plugin/boundary/BoundaryText.h"
#include "plugin/boundary/HostTableGuard.h"

namespace
{
using Object = HostTable::Object;

ClassID GetClass(int32_t kind)
{
    switch (kind) {
        case HOPBOX_EXPORT_DOCUMENT:
            return HostClassID::cPDFExportCommand;
        case HOPBOX_PDF_PREFERENCES:
            return HostClassID::cPDFPreferencesCommand;
        case HOPBOX_EXPORT_BOOK:
            return HostClassID::cBookExportCommand;
        default:
            return 0;
    }
}

// An object without anything where the host has no such command.
Object MakeCommand(IHostServices& services, int32_t kind)
{
    Object object;
    if (const ClassID commandClass = GetClass(kind)) {
        object.command = services.CreateCommand(commandClass);
    } else if (const HostPtr<IObjectModel> model = services.QueryObjectModel()) {
        if (kind == HOPBOX_PACKAGE_DOCUMENT)
            object.documentPackage = model->CreatePackageCommand();
        else if (kind == HOPBOX_PACKAGE_BOOK)
            object.bookPackage = model->CreateBookPackageCommand();
    }
    return object;
}

int32_t CreateCommand(void* host, int32_t kind, hopbox_handle* command)
{
    return Guard(host, [&](HostTable& table) {
        Object object = MakeCommand(table.GetServices(), kind);
        if (!object.command && object.GetPackage() == nullptr)
            return HOPBOX_UNSUPPORTED;
        hopbox_handle& place = Out(command);
        place = table.Keep(std::move(object));
        return HOPBOX_OK;
    });
}

// The preferences that a command has had from the first time that they were asked for.
template <class Body>
int32_t WithPreferences(void* host, hopbox_handle command, const Body& body)
{
    return Guard(host, [&](HostTable& table) {
        Object& object = table.Get(command);
        if (!object.preferences)
            object.preferences = table.Get(command, &Object::command).QueryPDFExportPreferences();
        return object.preferences ? body(*object.preferences) : HOPBOX_UNSUPPORTED;
    });
}

int32_t ReadJobOptions(void* host, hopbox_handle command, const hopbox_text* path)
{
    return WithPreferences(host, command, [&](IPDFExportPreferences& preferences) {
        return ToResult(preferences.ReadJobOptions(IDFile(PMString(Boundary::Read(path)))));
    });
}

int32_t SetSwitch(void* host, hopbox_handle command, int32_t setting, int32_t isOn)
{
    return WithPreferences(host, command, [&](IPDFExportPreferences& preferences) {
        if (setting < 0 || setting >= cPDFSwitchCount)
            return HOPBOX_UNSUPPORTED;
        preferences.SetSwitch(static_cast<PDFSwitch>(setting), isOn != 0);
        return HOPBOX_OK;
    });
}

int32_t SetLength(void* host, hopbox_handle command, int32_t setting, double points)
{
    return WithPreferences(host, command, [&](IPDFExportPreferences& preferences) {
        if (setting < 0 || setting >= cPDFLengthCount)
            return HOPBOX_UNSUPPORTED;
        preferences.SetLength(static_cast<PDFLength>(setting), points);
        return HOPBOX_OK;
    });
}

int32_t GetSpreads(void* host, hopbox_handle command, int32_t* areJoined)
{
    return WithPreferences(host, command, [&](IPDFExportPreferences& preferences) {
        Out(areJoined) = preferences.GetReaderSpreads() == cReaderSpreadsOn;
        return HOPBOX_OK;
    });
}

int32_t SetSpreads(void* host, hopbox_handle command, int32_t areJoined)
{
    return WithPreferences(host, command, [&](IPDFExportPreferences& preferences) {
        preferences.SetReaderSpreads(areJoined != 0 ? cReaderSpreadsOn : cReaderSpreadsOff);
        return HOPBOX_OK;
    });
}

// The file of an export of a document or of a book, or the folder of a package.
int32_t SetOutput(void* host, hopbox_handle command, const hopbox_text* path)
{
    return Guard(host, [&](HostTable& table) {
        const IDFile file{PMString(Boundary::Read(path))};
        if (IPackageCommand* package = table.Get(command).GetPackage()) {
            package->SetTargetFolder(file);
            return HOPBOX_OK;
        }
        ICommand& exporting = table.Get(command, &Object::command);
        if (const auto data = exporting.QuerySystemFileData())
            data->SetFile(file);
        else if (const auto book = exporting.QueryBookExportData())
            book->SetOutputFile(file);
        else
            return HOPBOX_UNSUPPORTED;
        return HOPBOX_OK;
    });
}

int32_t SetPages(void* host, hopbox_handle command, hopbox_handle document, const uint32_t* pages,
                 size_t count, int32_t areJoined)
{
    return Guard(host, [&](HostTable& table) {
        if (count > Boundary::cMostPages || (pages == nullptr && count > 0))
            return HOPBOX_FAILED;
        UIDList list(table.Get(document, &Object::document).GetDataBase());
        for (size_t index = 0; index < count; ++index)
            list.Append(pages[index]);
        const auto output = table.Get(command, &Object::command).QueryOutputPages();
        if (!output)
            return HOPBOX_UNSUPPORTED;
        output->SetPages(list, areJoined != 0);
        return HOPBOX_OK;
    });
}

int32_t SetName(void* host, hopbox_handle command, const hopbox_text* name)
{
    return Guard(host, [&](HostTable& table) {
        const auto output = table.Get(command, &Object::command).QueryOutputPages();
        if (!output)
            return HOPBOX_UNSUPPORTED;
        output->SetName(PMString::Untranslated(Boundary::Read(name)));
        return HOPBOX_OK;
    });
}

int32_t SetDocument(void* host, hopbox_handle command, hopbox_handle document)
{
    return Guard(host, [&](HostTable& table) {
        table.Get(command, &Object::documentPackage).SetDocument(table.Get(document, &Object::document));
        return HOPBOX_OK;
    });
}

int32_t SetBook(void* host, hopbox_handle command, hopbox_handle book)
{
    return Guard(host, [&](HostTable& table) {
        const IBook& source = table.Get(book, &Object::book);
        if (const auto& package = table.Get(command).bookPackage) {
            package->SetBook(source);
            return HOPBOX_OK;
        }
        const auto data = table.Get(command, &Object::command).QueryBookExportData();
        if (!data)
            return HOPBOX_UNSUPPORTED;
        const auto content = source.QueryContent();
        if (!content)
            return HOPBOX_FAILED;
        data->SetBook(source);
        data->SetDocuments(*content);
        return HOPBOX_OK;
    });
}

int32_t SetPackageSetting(void* host, hopbox_handle command, int32_t setting, int32_t isOn)
{
    return Guard(host, [&](HostTable& table) {
        IPackageCommand* package = table.Get(command).GetPackage();
        if (package == nullptr || setting < 0 || setting >= cPackageSettingCount)
            return HOPBOX_UNSUPPORTED;
        package->SetSetting(static_cast<PackageSetting>(setting), isOn != 0);
        return HOPBOX_OK;
    });
}

int32_t RunCommand(void* host, hopbox_handle command)
{
    return GuardCommand(host, [&](HostTable& table, const CancelWatch&) {
        IPackageCommand* package = table.Get(command).GetPackage();
        return ToResult(package != nullptr
                            ? package->Execute()
                            : table.GetServices().ProcessCommand(table.Get(command, &Object::command)));
    });
}

int32_t WriteReport(void* host, hopbox_handle package)
{
    return GuardCommand(host, [&](HostTable& table, const CancelWatch&) {
        const IDocumentPackageCommand& command = table.Get(package, &Object::documentPackage);
        const auto model = table.GetServices().QueryObjectModel();
        const auto report = model ? model->CreatePackageReportCommand() : HostPtr<IPackageReportCommand>();
        if (!report)
            return HOPBOX_UNSUPPORTED;
        return report->CreateReport(command) == IPackageReportCommand::cReportWritten ? HOPBOX_OK
                                                                                      : HOPBOX_FAILED;
    });
}
}  // namespace

void HostTableCommands::AddTo(hopbox_host_table& table)
{
    table.create_command = CreateCommand;
    table.read_job_options = ReadJobOptions;
    table.set_switch = SetSwitch;
    table.set_length = SetLength;
    table.get_spreads = GetSpreads;
    table.set_spreads = SetSpreads;
    table.set_output = SetOutput;
    table.set_pages = SetPages;
    table.set_name = SetName;
    table.set_document = SetDocument;
    table.set_book = SetBook;
    table.set_package_setting = SetPackageSetting;
    table.run_command = RunCommand;
    table.write_report = WriteReport;
}
