#include "foundation/system/GDamagedCopies.h"

#include "foundation/core/GFileInputStream.h"
#include "foundation/core/SharedFile.h"
#include "foundation/system/GDurableFile.h"
#include "foundation/system/GFileCalls.h"
#include "foundation/system/GSystemError.h"

#include <algorithm>

namespace
{
constexpr int cChunkSize = 64 * 1024;

GPathName GetCopy(const GPathName& file, int age)
{
    const GString suffix = age == 0 ? GString() : QLatin1Char('.') + GString::number(age);
    return GPathName(file.GetPortablePath() + QStringLiteral(".damaged") + suffix);
}

// Gives each chunk of the file to `take`, until it gives false.
template <typename Sink>
void ReadChunks(GFileInputStream& file, Sink take)
{
    std::vector<char> chunk(cChunkSize);
    while (const int count = file.Read(chunk.data(), cChunkSize)) {
        if (!take(chunk.data(), count))
            return;
    }
}

bool AreEqual(GFileInputStream& first, GFileInputStream& second)
{
    bool areEqual = true;
    std::vector<char> other(cChunkSize);
    ReadChunks(first, [&](const char* bytes, int count) {
        areEqual =
            second.Read(other.data(), count) == count && std::equal(bytes, bytes + count, other.data());
        return areEqual;
    });
    return areEqual && second.Read(other.data(), 1) == 0;
}

bool HasContent(const GPathName& file)
{
    char byte = 0;
    const auto stream = GFileInputStream::OpenIfThere(file.GetNativePath());
    return stream != nullptr && stream->Read(&byte, 1) == 1;
}

// Whether the newest copy holds the same.
bool IsKept(const GPathName& file, const GPathName& newest)
{
    GFileInputStream damaged(file.GetNativePath());
    const auto kept = GFileInputStream::OpenIfThere(newest.GetNativePath());
    return kept != nullptr && AreEqual(damaged, *kept);
}

// Makes room for a copy of that age: those from there on are one older, up to the first gap, so that a new
// attempt after a failed one moves nothing.
void MakeRoom(const GPathName& file, int age)
{
    const GPathName copy = GetCopy(file, age);
    const GPathName older = GetCopy(file, age + 1);
    if (age + 1 == GDamagedCopies::cMostCopies || IsFileMissing(copy.GetNativePath()))
        return;
    MakeRoom(file, age + 1);
    if (GFileCalls::RenameFile(copy, older, true))
        return;
    const boost::system::error_code reason = GetLastSystemError();
    if (reason != boost::system::errc::no_such_file_or_directory)
        RaiseFileError(QStringLiteral("The file \"%1\" can't be written"), older, reason);
}
}  // namespace

GPathName GDamagedCopies::GetNewest(const GPathName& file)
{
    return GetCopy(file, 0);
}

std::vector<GPathName> GDamagedCopies::List(const GPathName& file)
{
    std::vector<GPathName> copies;
    for (int age = 0; age < cMostCopies; ++age) {
        const GPathName copy = GetCopy(file, age);
        if (!IsFileMissing(copy.GetNativePath()))
            copies.push_back(copy);
    }
    return copies;
}

GPathName GDamagedCopies::Keep(const GPathName& file)
{
    if (!HasContent(file))
        return GPathName();
    const GPathName newest = GetNewest(file);
    if (IsKept(file, newest))
        return newest;
    GFileInputStream damaged(file.GetNativePath());
    GDurableFile copy(newest, GDurableFile::Access::cOwnerOnly);
    ReadChunks(damaged, [&](const char* bytes, int count) {
        copy.Write(bytes, count);
        return true;
    });
    // Whatever finds no space fails before an older copy goes.
    copy.Prepare();
    MakeRoom(file, 0);
    copy.Commit();
    return newest;
}
