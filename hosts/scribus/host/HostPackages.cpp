#include "hosts/scribus/host/HostPackages.h"

#include "foundation/system/GDurableFile.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/system/GSystemFolders.h"
#include "foundation/trace/GTrace.h"
#include "hosts/scribus/host/HostBooks.h"
#include "hosts/scribus/host/HostDocuments.h"
#include "hosts/scribus/host/HostObject.h"
#include "hosts/scribus/host/ScribusHost.h"
#include "hosts/scribus/packages/PackageFolder.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

static const QString cReportName = QStringLiteral("Package Report.txt");

namespace
{
// The Hopbox that a package in the plug-in's work folder is for: below the temporary folder stand the user's
// name, the Hopbox's, and what is made for it. Empty for a folder elsewhere.
QString GetHopbox(const QString& folder)
{
    const QDir temporary(GFileSystemBase::GetSpecialPath(GSpecialPath::cTemporary).GetNativePath());
    const QStringList names = temporary.relativeFilePath(folder).split(QLatin1Char('/'));
    constexpr int cPlace = 1;
    return names.size() > cPlace + 1 && names.first() != QLatin1String("..") ? names[cPlace] : QString();
}

// Where each setting goes, in the order of its kind. Links always lead into the package, and hidden layers
// are always taken along: Scribus reads them like any other, and would miss what they link. Hyphenation is a
// part of the document here.
constexpr bool PackageSettings::*cSettings[] = {&PackageSettings::hasFonts,
                                                &PackageSettings::hasLinks,
                                                &PackageSettings::hasProfiles,
                                                nullptr,
                                                nullptr,
                                                &PackageSettings::goesOnWithoutLinks,
                                                &PackageSettings::hasReport,
                                                nullptr};
static_assert(std::size(cSettings) == cPackageSettingCount);

// What both kinds of package have in common: the orders, the folder and its report.
template <class Interface>
class Package : public HostObject<Interface>
{
public:
    explicit Package(ScribusHost& host) : mHost(host) {}

    void SetTargetFolder(const IDFile& folder) override
    {
        mFolder = FileUtils::SysFileToPMString(folder).GetString();
    }

    void SetSetting(PackageSetting setting, bool isOn) override
    {
        if (const auto place = cSettings[static_cast<int>(setting)])
            mSettings.*place = isOn;
    }

    // Fails also where no package was made.
    GResult WriteReport() const
    {
        if (mReport.isEmpty())
            return GResult::Failure(QStringLiteral("There is no package to report on."));
        return GDurableFile::Replace(mFolder + QLatin1Char('/') + cReportName, mReport.toUtf8());
    }

protected:
    // Fills the folder with what `fill` adds to it.
    template <class Fill>
    GResult Collect(const Fill& fill)
    {
        PackageFolder folder(mHost.GetRunner(), mFolder, mSettings);
        mReport.clear();
        return folder.Make()
            .Then([&] { return fill(folder); })
            .Then([&] {
                mReport = folder.MakeReport(MakeFacts());
                return mSettings.hasReport ? WriteReport() : GResult::Success();
            })
            .Then([&] { return folder.Finish(); })
            .Then([&] {
                mHost.SetLastPackage(mFolder);
                return GResult::Success();
            });
    }

    ScribusHost& mHost;
    QString mFolder;

private:
    // Only what was exported just before belongs to the package.
    PackageFacts MakeFacts() const
    {
        const bool isSame = QFileInfo(mHost.GetLastPDF()).path() == QFileInfo(mFolder).path();
        return {QDateTime::currentDateTime(), GetHopbox(mFolder),
                isSame ? mHost.GetLastReport() : QJsonObject()};
    }

    PackageSettings mSettings;
    QString mReport;
};

class DocumentPackage : public Package<IDocumentPackageCommand>
{
public:
    using Package::Package;

    void SetDocument(const IDocument& document) override { mDocument = HostDocuments::GetDocument(document); }

    ErrorCode Execute() override
    {
        return mHost.RunCommand(QStringLiteral("Package"), 1, [this](const ScribusHost::BeginStep& step) {
            if (mDocument == nullptr)
                return GResult::Failure(QStringLiteral("The package was given no document."));
            step(mDocument->GetName());
            return Collect([this](PackageFolder& folder) { return folder.AddDocument(*mDocument); });
        });
    }

private:
    ScribusHost::DocumentPtr mDocument;
};

class BookPackage : public Package<IBookPackageCommand>
{
public:
    using Package::Package;

    void SetBook(const IBook& book) override { mBook = std::make_unique<BookFile>(HostBooks::GetBook(book)); }

    ErrorCode Execute() override
    {
        if (!mBook)
            return cFailure;
        return mHost.RunCommand(QStringLiteral("Package Book"), qMax(1, mBook->GetDocuments().size()),
                                [this](const ScribusHost::BeginStep& step) {
                                    return Collect([&](PackageFolder& folder) { return Fill(folder, step); });
                                });
    }

private:
    GResult Fill(PackageFolder& folder, const ScribusHost::BeginStep& step)
    {
        BookFile copy(mFolder + QLatin1Char('/') +
                      folder.ReserveName({}, QFileInfo(mBook->GetPath()).fileName()));
        copy.TakeSettings(*mBook);
        QStringList copies;
        for (const QString& path : mBook->GetDocuments()) {
            step(path);
            const GResult result = folder.AddDocument(*mHost.TakeDocument(path));
            if (!result.HasSucceeded())
                return result;
            copies.append(folder.GetCopy(path));
        }
        copy.SetDocuments(copies);
        return copy.Save();
    }

    std::unique_ptr<BookFile> mBook;
};

class Report : public HostObject<IPackageReportCommand>
{
public:
    int32_t CreateReport(const IDocumentPackageCommand& package) override
    {
        const GResult written = static_cast<const DocumentPackage&>(package).WriteReport();
        if (!written.HasSucceeded())
            GTrace::Error(QStringLiteral("IPackageReportCommand::CreateReport"), written.GetReason());
        return written.HasSucceeded() ? cReportWritten : 0;
    }
};

class ObjectModel : public HostObject<IObjectModel>
{
public:
    explicit ObjectModel(ScribusHost& host) : mHost(host) {}

    HostPtr<IDocumentPackageCommand> CreatePackageCommand() const override
    {
        return MakeHostObject<DocumentPackage, IDocumentPackageCommand>(mHost);
    }

    HostPtr<IPackageReportCommand> CreatePackageReportCommand() const override
    {
        return MakeHostObject<Report, IPackageReportCommand>();
    }

    HostPtr<IBookPackageCommand> CreateBookPackageCommand() const override
    {
        return MakeHostObject<BookPackage, IBookPackageCommand>(mHost);
    }

private:
    ScribusHost& mHost;
};
}  // namespace

HostPtr<IObjectModel> HostPackages::MakeObjectModel(ScribusHost& host)
{
    return MakeHostObject<ObjectModel, IObjectModel>(host);
}
