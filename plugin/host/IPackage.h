#pragma once

#include "plugin/host/HostIdentifiers.h"
#include "plugin/host/HostPtr.h"
#include "plugin/host/IBook.h"
#include "plugin/host/IDocument.h"

// The yes/no settings of a package, in the order of the command's interface. The first seven have the order
// of the host's public scripting call for packaging. The eighth is one more choice about the content, which
// only the host's own package window offers. The host writes it together with the fourth and the fifth, the
// other two choices about the content.
enum class PackageSetting
{
    Fonts,                    // copy the fonts
    Links,                    // copy the linked graphics
    Profiles,                 // copy the colour profiles
    UpdateGraphics,           // make the links of the copy point to the copied graphics
    HiddenLayers,             // take fonts and links of hidden and non-printing content too
    IgnorePreflightErrors,    // go on where the host's check finds faults
    Report,                   // write the host's own report
    DocumentHyphenationOnly,  // hyphenate the copy by the document's own exceptions alone
    End
};
constexpr int cPackageSettingCount = static_cast<int>(PackageSetting::End);

// Collects a document or a book, with what it needs, in a folder.
class IPackageCommand : public IHostObject
{
public:
    // The folder that becomes the package. The plug-in has already made it, empty, so that no other process
    // takes its name. Host: the set of the target folder.
    virtual void SetTargetFolder(const IDFile& folder) = 0;

    // Host: the setting at that place of the command's interface.
    virtual void SetSetting(PackageSetting setting, bool isOn) = 0;

    // Makes the package. Zero on success. After a failure, what is left in the folder is the host's business.
    // Host: the execution of the command.
    virtual ErrorCode Execute() = 0;

protected:
    ~IPackageCommand() = default;
};

class IDocumentPackageCommand : public IPackageCommand
{
public:
    // Host: the set of the document, on interface 80393.
    virtual void SetDocument(const IDocument& document) = 0;

protected:
    ~IDocumentPackageCommand() = default;
};

class IBookPackageCommand : public IPackageCommand
{
public:
    // Host: the set of the book, on interface 80401.
    virtual void SetBook(const IBook& book) = 0;

protected:
    ~IBookPackageCommand() = default;
};

// Writes the report of a package into the package's folder.
class IPackageReportCommand : public IHostObject
{
public:
    static constexpr int32_t cReportWritten = 1;

    // Succeeds exactly when it gives cReportWritten. Host: the run on the package command, its two further
    // arguments empty, the last one true (no window).
    virtual int32_t CreateReport(const IDocumentPackageCommand& package) = 0;

protected:
    ~IPackageReportCommand() = default;
};

// Where the host's packaging objects come from.
class IObjectModel : public IHostObject
{
public:
    // Host: CreateObject(80393, 80393, object model).
    virtual HostPtr<IDocumentPackageCommand> CreatePackageCommand() const = 0;

    // Host: CreateObject(80395, 80396, object model).
    virtual HostPtr<IPackageReportCommand> CreatePackageReportCommand() const = 0;

    // Host: CreateObject(80400, 80401, object model).
    virtual HostPtr<IBookPackageCommand> CreateBookPackageCommand() const = 0;

protected:
    ~IObjectModel() = default;
};
