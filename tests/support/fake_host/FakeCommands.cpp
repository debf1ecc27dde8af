#include "tests/support/fake_host/FakeCommands.h"

#include "tests/support/fake_host/FakeDocuments.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace
{
QString GetPath(const IDFile& file)
{
    return FileUtils::SysFileToPMString(file).GetString();
}

// Into a folder that is there already, as a host would.
bool Write(const QString& path, const QByteArray& content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush();
}

// A part of a command, over the command's record.
template <class Interface>
using CommandPart = FakeRecordObject<Interface, std::shared_ptr<FakeCommandRecord>>;

class FakePreferences : public CommandPart<IPDFExportPreferences>
{
public:
    using FakeRecordObject::FakeRecordObject;

    ErrorCode ReadJobOptions(const IDFile& file) override
    {
        QFile source(GetPath(file));
        if (const ErrorCode fault = mHost.AskForCode(HostOperation::ReadJobOptions); fault != cSuccess)
            return fault;
        if (!source.open(QIODevice::ReadOnly))
            return cFailure;
        mRecord->jobOptionsPath = GetPath(file);
        mRecord->jobOptions = source.readAll();
        return cSuccess;
    }

    void SetSwitch(PDFSwitch setting, bool isOn) override
    {
        mHost.Note();
        mRecord->switches[setting] = isOn;
    }
    void SetLength(PDFLength setting, double points) override
    {
        mHost.Note();
        mRecord->lengths[setting] = points;
    }
    int32_t GetReaderSpreads() const override { return mHost.Give(mRecord->readerSpreads); }
    void SetReaderSpreads(int32_t spreads) override { Take(mRecord->readerSpreads, spreads); }
};

class FakeFileData : public CommandPart<ISystemFileData>
{
public:
    using FakeRecordObject::FakeRecordObject;

    void SetFile(const IDFile& file) override { Take(mRecord->outputPath, GetPath(file)); }
};

class FakeOutputPages : public CommandPart<IOutputPages>
{
public:
    using FakeRecordObject::FakeRecordObject;

    void SetPages(const UIDList& pages, bool isSpreads) override
    {
        mHost.Note();
        mRecord->pages.clear();
        for (int i = 0; i < pages.Length(); ++i)
            mRecord->pages.push_back(pages[i]);
        mRecord->isSpreads = isSpreads;
    }

    void SetName(const PMString& name) override { Take(mRecord->name, name.GetString()); }
};

class FakeBookExportData : public CommandPart<IBookExportData>
{
public:
    using FakeRecordObject::FakeRecordObject;

    void SetBook(const IBook& book) override { Take(mRecord->bookPath, GetRecord(book).path); }
    void SetDocuments(const IBookContent& documents) override
    {
        mHost.Note();
        mRecord->documentCount = documents.GetDocumentCount();
    }
    void SetOutputFile(const IDFile& file) override { Take(mRecord->outputPath, GetPath(file)); }
};

template <class Interface>
class FakePackage : public FakeObject<Interface>
{
public:
    explicit FakePackage(FakeHost& host)
        : FakeObject<Interface>(host, "IPackageCommand"), mRecord(std::make_shared<FakePackageRecord>())
    {
        host.packages.push_back(mRecord);
    }

    void SetTargetFolder(const IDFile& folder) override { this->Take(mRecord->folder, GetPath(folder)); }
    void SetSetting(PackageSetting setting, bool isOn) override
    {
        this->mHost.Note();
        mRecord->settings.emplace_back(setting, isOn);
    }

    // Puts a copy of the document or book, or "Content" where it is no real file, into the folder, which must
    // be there and empty.
    ErrorCode Execute() override
    {
        if (this->mHost.onRun)
            this->mHost.onRun();
        if (const ErrorCode fault = this->mHost.AskForCode(HostOperation::ExecutePackage); fault != cSuccess)
            return fault;
        const QDir folder(mRecord->folder);
        const QString name = QFileInfo(mRecord->sourcePath).fileName();
        mRecord->hasRun = folder.exists() && folder.isEmpty() &&
                          (QFile::copy(mRecord->sourcePath, folder.filePath(name)) ||
                           Write(folder.filePath(QStringLiteral("Content")), "Document"));
        if (mRecord->hasRun && this->mHost.onMade)
            this->mHost.onMade(mRecord->folder);
        return mRecord->hasRun ? cSuccess : cFailure;
    }

    std::shared_ptr<FakePackageRecord> mRecord;
};

class FakeDocumentPackage : public FakePackage<IDocumentPackageCommand>
{
public:
    using FakePackage::FakePackage;
    void SetDocument(const IDocument& document) override
    {
        Take(mRecord->sourcePath, GetRecord(document).path);
    }
};

class FakeBookPackage : public FakePackage<IBookPackageCommand>
{
public:
    using FakePackage::FakePackage;
    void SetBook(const IBook& book) override { Take(mRecord->sourcePath, GetRecord(book).path); }
};

class FakeReport : public FakeObject<IPackageReportCommand>
{
public:
    explicit FakeReport(FakeHost& host) : FakeObject(host, "IPackageReportCommand") {}

    int32_t CreateReport(const IDocumentPackageCommand& package) override
    {
        if (const ErrorCode fault = mHost.AskForCode(HostOperation::CreateReport); fault != cSuccess)
            return fault == cFailure ? 0 : fault;
        const QDir folder(static_cast<const FakeDocumentPackage&>(package).mRecord->folder);
        const bool isWritten = Write(folder.filePath(QStringLiteral("Instructions.txt")), "Report");
        return isWritten ? cReportWritten : 0;
    }
};

HostOperation GetRunOperation(ClassID commandClass)
{
    switch (commandClass) {
        case HostClassID::cPDFExportCommand:
            return HostOperation::RunPDFExport;
        case HostClassID::cBookExportCommand:
            return HostOperation::RunBookExport;
        default:
            return HostOperation::RunPDFPreferences;
    }
}
}  // namespace

FakeCommand::FakeCommand(FakeHost& host, ClassID commandClass)
    : FakeObject(host, "ICommand"), mRecord(std::make_shared<FakeCommandRecord>())
{
    mRecord->commandClass = commandClass;
    host.commands.push_back(mRecord);
}

template <class Part>
HostPtr<Part> FakeCommand::Give(std::initializer_list<ClassID> owners, HostOperation operation)
{
    if (std::count(owners.begin(), owners.end(), mRecord->commandClass) == 0)
        return {};
    return HandOut<Part>(mHost, operation, "a part of a command", mRecord);
}

HostPtr<IPDFExportPreferences> FakeCommand::QueryPDFExportPreferences()
{
    return Give<FakePreferences>({HostClassID::cPDFExportCommand, HostClassID::cPDFPreferencesCommand},
                                 HostOperation::QueryPDFExportPreferences);
}

HostPtr<ISystemFileData> FakeCommand::QuerySystemFileData()
{
    return Give<FakeFileData>({HostClassID::cPDFExportCommand}, HostOperation::QuerySystemFileData);
}

HostPtr<IOutputPages> FakeCommand::QueryOutputPages()
{
    return Give<FakeOutputPages>({HostClassID::cPDFExportCommand}, HostOperation::QueryOutputPages);
}

HostPtr<IBookExportData> FakeCommand::QueryBookExportData()
{
    return Give<FakeBookExportData>({HostClassID::cBookExportCommand}, HostOperation::QueryBookExportData);
}

ErrorCode FakeCommand::Run()
{
    if (mHost.onRun)
        mHost.onRun();
    const HostOperation operation = GetRunOperation(mRecord->commandClass);
    if (const ErrorCode fault = mHost.AskForCode(operation); fault != cSuccess)
        return fault;
    mRecord->hasRun = true;
    if (operation == HostOperation::RunPDFPreferences)
        return cSuccess;
    const bool isDone = Write(mRecord->outputPath, "%PDF-1.4\n%%EOF\n");
    if (isDone && mHost.onMade)
        mHost.onMade(mRecord->outputPath);
    return isDone ? cSuccess : cFailure;
}

HostPtr<IDocumentPackageCommand> FakeObjectModel::CreatePackageCommand() const
{
    return HandOut<FakeDocumentPackage>(mHost, HostOperation::CreatePackageCommand);
}

HostPtr<IPackageReportCommand> FakeObjectModel::CreatePackageReportCommand() const
{
    return HandOut<FakeReport>(mHost, HostOperation::CreatePackageReportCommand);
}

HostPtr<IBookPackageCommand> FakeObjectModel::CreateBookPackageCommand() const
{
    return HandOut<FakeBookPackage>(mHost, HostOperation::CreateBookPackageCommand);
}
