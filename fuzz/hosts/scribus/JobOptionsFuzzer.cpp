#include "hosts/scribus/pdf/PdfSettings.h"
#include "joboptions/JobOptions.h"

#include <cstdlib>

// A file that is refused says where; one that is taken makes settings that Scribus can be given, or says why
// not.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray text(reinterpret_cast<const char*>(data), static_cast<int>(size));
    JobOptions options;
    const GResult parsed = options.Parse(text);
    if (parsed.HasSucceeded() != parsed.GetReason().isEmpty())
        std::abort();
    if (!parsed.HasSucceeded())
        return 0;
    PdfSettings settings;
    const GResult made = PdfSettings::Make(options, settings);
    if (made.HasSucceeded() != made.GetReason().isEmpty())
        std::abort();
    // Only what this host can't make, or not in a PDF/X, may still be wrong with them.
    const bool mayBeWrong = settings.IsX() || !settings.impossible.isEmpty();
    if (made.HasSucceeded() && !mayBeWrong && !settings.FindFault().isEmpty())
        std::abort();
    settings.MakeOptions();
    return 0;
}
