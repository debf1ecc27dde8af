#pragma once

#include <cstdint>

// The codes of the plug-in's texts in the string pool.
namespace PlugInMessage
{
constexpr uint32_t cPlugInNotAcquired = 30060000;
constexpr uint32_t cNoDocument = 30060001;
constexpr uint32_t cExportError = 30060002;
constexpr uint32_t cHopboxNotLaunched = 30060003;
constexpr uint32_t cSettingNotFound = 30060004;  // %1 is the setting's name; stands without the frame
constexpr uint32_t cFrame = 30060005;            // around every other error text, which is its %1
constexpr uint32_t cPDFExportCommandNotFound = 30060006;
constexpr uint32_t cPDFExportFailed = 30060007;
constexpr uint32_t cPDFPreferencesNotFound = 30060008;
constexpr uint32_t cJobOptionsUnreadable = 30060009;
constexpr uint32_t cFileDataNotFound = 30060010;
constexpr uint32_t cFontMissing = 30060011;   // followed by the list of the one font
constexpr uint32_t cFontsMissing = 30060012;  // followed by the list of the fonts
constexpr uint32_t cFontListNotFound = 30060013;
constexpr uint32_t cExportErrorTitle = 30060014;
constexpr uint32_t cPackageCommandNotFound = 30060015;
constexpr uint32_t cPackageFailed = 30060016;
constexpr uint32_t cReportCommandNotFound = 30060017;
constexpr uint32_t cReportFailed = 30060018;
constexpr uint32_t cDocumentNotSaved = 30060019;
constexpr uint32_t cDocumentInvalid = 30060020;
constexpr uint32_t cDocumentNotOpened = 30060021;
constexpr uint32_t cBookInvalid = 30060022;
constexpr uint32_t cNoBook = 30060023;

// A code of the host's for pages that it can't give, of a range or of the whole document; its text is
// registered beside the others.
constexpr uint32_t cNoPages = 11010032;
}  // namespace PlugInMessage
