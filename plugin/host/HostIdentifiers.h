#pragma once

#include <cstdint>

// Every number that the plug-in and the host exchange: the 32-bit class, interface, action and unit
// identifiers that the host publishes, and the identifiers that the plug-in owns.

using ActionID = int32_t;
using ClassID = int32_t;
using InterfaceID = int32_t;
using UID = uint32_t;  // an object of a database, such as a page; 0 is none

// What the host's calls give: zero for success, anything else is a failure.
using ErrorCode = int32_t;
constexpr ErrorCode cSuccess = 0;

// What the functions in HostCalls.h give when there is no host to call. Hosts may use it for any failure.
constexpr ErrorCode cFailure = 1;

constexpr UID cNoUID = 0;

// The plug-in's own identifiers: its prefix, and the identifiers that begin with it.
namespace PlugInID
{
constexpr int32_t cPrefix = 0x198C00;
constexpr ClassID cActionComponent = cPrefix;
constexpr ActionID cAboutAction = cPrefix;
constexpr ActionID cDocumentAction = cPrefix + 4;
constexpr ActionID cBookAction = cPrefix + 6;
}  // namespace PlugInID

// The interfaces that UtilsBoss::QueryUtils can give.
namespace HostUtilsID
{
constexpr InterfaceID cLayout = 118846;
constexpr InterfaceID cDocument = 351;
constexpr InterfaceID cModal = 1665;
}  // namespace HostUtilsID

// Interfaces that an adaptor asks the host's objects for. The plug-in never uses these numbers itself: the
// adaptor does, in the operation that needs the interface.
namespace HostInterfaceID
{
constexpr InterfaceID cMenuManager = 53764;
constexpr InterfaceID cBookManager = 0x10001;
constexpr InterfaceID cBookContent = 0x10004;
constexpr InterfaceID cUnitPreferences = 4610;
constexpr InterfaceID cPageList = 1324;
constexpr InterfaceID cFontList = 44804;
constexpr InterfaceID cPDFExportPreferences = 9479;
constexpr InterfaceID cSystemFileData = 3587;
constexpr InterfaceID cOutputPages = 90904;
constexpr InterfaceID cPackageCommand = 80393;
constexpr InterfaceID cPackageReportCommand = 80396;
constexpr InterfaceID cBookPackageCommand = 80401;
constexpr InterfaceID cBookExportData = 65554;
}  // namespace HostInterfaceID

// Classes of commands.
namespace HostClassID
{
constexpr ClassID cPDFExportCommand = 9477;
constexpr ClassID cPDFPreferencesCommand = 9479;
constexpr ClassID cBookExportCommand = 65563;
constexpr ClassID cPackageCommand = 80393;
constexpr ClassID cPackageReportCommand = 80395;
constexpr ClassID cBookPackageCommand = 80400;
}  // namespace HostClassID

// Unit classes of the host's measurement preferences.
namespace HostUnitID
{
constexpr ClassID cPoints = 4609;
constexpr ClassID cPicas = 4610;
constexpr ClassID cInches = 4611;
constexpr ClassID cDecimalInches = 4612;
constexpr ClassID cMillimetres = 4613;
constexpr ClassID cCentimetres = 4614;
}  // namespace HostUnitID
