#pragma once

#include "plugin/host/HostIdentifiers.h"
#include "plugin/host/HostPtr.h"
#include "plugin/host/IBook.h"
#include "plugin/host/IDFile.h"
#include "plugin/host/UIDList.h"

// Settings of a PDF export that are on or off. Each is one preference of the host's interface 9479.
enum class PDFSwitch
{
    UseDocumentBleed,  // the document's own bleed, instead of the four lengths
    IncludeSlug,       // the slug area
    CropMarks,
    BleedMarks,
    RegistrationMarks,
    ColorBars,
    PageInformation,
    End
};
constexpr int cPDFSwitchCount = static_cast<int>(PDFSwitch::End);

// Settings of a PDF export that are lengths, in points. Each is one preference of the host's interface 9479.
enum class PDFLength
{
    BleedTop,
    BleedBottom,
    BleedInside,
    BleedOutside,
    MarkOffset,  // from the page's edge to the marks
    MarkWeight,  // the width of the marks' lines
    End
};
constexpr int cPDFLengthCount = static_cast<int>(PDFLength::End);

// Values of the setting that decides whether the pages of a spread become one page of the PDF.
constexpr int32_t cReaderSpreadsOff = 0;
constexpr int32_t cReaderSpreadsOn = 1;

// The settings with which a PDF is made. Each command has its own settings; changing them changes nothing
// else.
class IPDFExportPreferences : public IHostObject
{
public:
    // Takes every setting from a job options file. Zero on success; otherwise the settings stay as they were.
    // Host: the preferences' reading of a PDF settings file.
    virtual ErrorCode ReadJobOptions(const IDFile& file) = 0;

    // Host: the preference of that name, set after the job options were read.
    virtual void SetSwitch(PDFSwitch setting, bool isOn) = 0;
    virtual void SetLength(PDFLength setting, double points) = 0;

    // cReaderSpreadsOn, or anything else for pages that stand alone. Host: the reader-spreads preference.
    virtual int32_t GetReaderSpreads() const = 0;
    virtual void SetReaderSpreads(int32_t spreads) = 0;

protected:
    ~IPDFExportPreferences() = default;
};

// The file that a command writes to.
class ISystemFileData : public IHostObject
{
public:
    // Host: the set of the file, on interface 3587 of the command.
    virtual void SetFile(const IDFile& file) = 0;

protected:
    ~ISystemFileData() = default;
};

// What a PDF export command exports.
class IOutputPages : public IHostObject
{
public:
    // Sets the pages, in the order of the list. `isSpreads`: the pages of a spread are joined. Host: the
    // initialisation of interface 90904 of the command.
    virtual void SetPages(const UIDList& pages, bool isSpreads) = 0;

    // Sets the document's name for the PDF and the host's progress window. Host: the set of the name.
    virtual void SetName(const PMString& name) = 0;

protected:
    ~IOutputPages() = default;
};

// What a book export command exports.
class IBookExportData : public IHostObject
{
public:
    // Set the book, all of its documents in its order, and the file to write. Host: the set-up of interface
    // 65554 of the command: book, contents, file.
    virtual void SetBook(const IBook& book) = 0;
    virtual void SetDocuments(const IBookContent& documents) = 0;
    virtual void SetOutputFile(const IDFile& file) = 0;

protected:
    ~IBookExportData() = default;
};

// Something that the host can be told to do. Each command has only those of the interfaces below that it
// needs; a query for another one gives nothing. CmdUtils runs a command, once.
class ICommand : public IHostObject
{
public:
    // Host: the command's interface 9479. Commands 9477 and 9479 have it.
    virtual HostPtr<IPDFExportPreferences> QueryPDFExportPreferences() = 0;

    // Host: the command's interface 3587. Command 9477 has it.
    virtual HostPtr<ISystemFileData> QuerySystemFileData() = 0;

    // Host: the command's interface 90904. Command 9477 has it.
    virtual HostPtr<IOutputPages> QueryOutputPages() = 0;

    // Host: the command's interface 65554. Command 65563 has it.
    virtual HostPtr<IBookExportData> QueryBookExportData() = 0;

protected:
    ~ICommand() = default;
};

// It is told when the user cancels one of the plug-in's commands while the command runs.
class ICancelObserver
{
public:
    // Called on the main thread, from inside the running command, before the command returns its failure. It
    // may be called more than once.
    virtual void OnCommandCancelled() = 0;

protected:
    ~ICancelObserver() = default;
};
