#include "apps/printer_processor/inbox/JobJournalText.h"

#include <QCryptographicHash>
#include <QList>

#include <cstdlib>

// Gives each line of the input the check that it ought to have, so that the fuzzer gets past it.
static GBuffer AddChecks(const GBuffer& input)
{
    GBuffer text;
    for (const GBuffer& line : input.split('\n')) {
        const GBuffer check = QCryptographicHash::hash(line, QCryptographicHash::Sha256).toHex().left(8);
        text += check + ' ' + line + '\n';
    }
    return text;
}

static void Check(const GBuffer& text)
{
    const JobJournalContent content = JobJournalContent::Read(text);
    for (const auto& job : content.jobs) {
        if (!content.Knows(job.second.queue, job.second.position) ||
            job.second.name.contains(QLatin1Char('/')) || job.first > content.lastNumber)
            std::abort();
    }
    if (content.keeper == 0)
        return;
    const GBuffer written = content.Write();
    const JobJournalContent again = JobJournalContent::Read(written);
    if (again.isDamaged || again.jobs.size() != content.jobs.size() || again.Write() != written)
        std::abort();
}

// A journal as somebody else left it: what is read of it can be written, and is read as the same again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const GBuffer input(reinterpret_cast<const char*>(data), static_cast<int>(size));
    Check(input);
    Check(AddChecks(input));
    return 0;
}
