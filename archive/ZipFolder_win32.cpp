#include "archive/ZipFolder.h"

#include "archive/ZipEntryPath.h"
#include "foundation/core/GException.h"
#include "foundation/core/GPathName.h"

#include <windows.h>

#include <algorithm>

namespace Morvane
{
static constexpr int cMaximumNameLength = 255;
static constexpr DWORD cShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

static const wchar_t* toWide(const QString& text)
{
    return reinterpret_cast<const wchar_t*>(text.utf16());
}

static std::optional<FileIdentity> getIdentityOf(HANDLE handle)
{
    BY_HANDLE_FILE_INFORMATION information{};
    if (!GetFileInformationByHandle(handle, &information))
        return std::nullopt;
    return FileIdentity(information.dwVolumeSerialNumber,
                        static_cast<uint64_t>(information.nFileIndexHigh) << 32 | information.nFileIndexLow);
}

// A file that is marked so goes with its last handle, also with that of a process that is killed.
static bool setGoingWithHandle(HANDLE handle, bool isGoing)
{
    FILE_DISPOSITION_INFO information = {};
    information.DeleteFile = isGoing;
    return SetFileInformationByHandle(handle, FileDispositionInfo, &information, sizeof information) != 0;
}

static bool isFolderProper(const QString& path)
{
    const DWORD attributes = GetFileAttributesW(toWide(path));
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 &&
           (attributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0;
}

// Windows drops dots and blanks at the end of a name and takes the rest of the forbidden characters for
// wildcards, streams and redirections.
bool canHoldName(const QString& name)
{
    static const QString forbidden = QStringLiteral("<>:\"|?*");
    const auto isForbidden = [](QChar character) {
        return character.unicode() < 0x20 || forbidden.contains(character);
    };
    return name.size() <= cMaximumNameLength && !name.endsWith(QLatin1Char('.')) &&
           !name.endsWith(QLatin1Char(' ')) && std::none_of(name.begin(), name.end(), isForbidden);
}

ZipFile::~ZipFile()
{
    static_cast<void>(close());  // who wrote has closed it
}

bool ZipFile::write(const char* bytes, int size)
{
    DWORD count = 0;
    return WriteFile(reinterpret_cast<HANDLE>(mHandle), bytes, static_cast<DWORD>(size), &count, nullptr) !=
               0 &&
           count == static_cast<DWORD>(size);
}

bool ZipFile::addMode(int)
{
    return true;
}

bool ZipFile::setReadOnly()
{
    FILE_BASIC_INFO information = {};  // times of 0 stay what they are
    information.FileAttributes = FILE_ATTRIBUTE_READONLY;
    return SetFileInformationByHandle(reinterpret_cast<HANDLE>(mHandle), FileBasicInfo, &information,
                                      sizeof information) != 0;
}

bool ZipFile::setModified(const QDateTime& moment)
{
    constexpr qint64 cTicksPerSecond = 10000000;
    constexpr qint64 cSecondsFrom1601 = 11644473600;
    const qint64 ticks = (moment.toSecsSinceEpoch() + cSecondsFrom1601) * cTicksPerSecond;
    const FILETIME time = {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
    return SetFileTime(reinterpret_cast<HANDLE>(mHandle), nullptr, nullptr, &time) != 0;
}

std::optional<FileIdentity> ZipFile::getIdentity() const
{
    return getIdentityOf(reinterpret_cast<HANDLE>(mHandle));
}

// Nobody else can open it for writing.
PFileHandle ZipFile::own() const
{
    return PFileHandle();
}

bool ZipFile::close()
{
    const HANDLE handle = reinterpret_cast<HANDLE>(mHandle);
    mHandle = reinterpret_cast<Handle>(INVALID_HANDLE_VALUE);
    return handle == INVALID_HANDLE_VALUE || CloseHandle(handle) != 0;
}

// A folder is kept open without the right to delete or rename it, so that what was checked on the way down
// stays what it is while the folder is in use. The path is in the long form, which takes names as they stand,
// and has no separator at its end; with one, "C:" is the root and not the volume.
struct ZipFolder::Place
{
    Place(const QString& path, HANDLE handle) : mPath(path), mHandle(handle) {}
    ~Place() { CloseHandle(mHandle); }

    QString getChild(const QString& name) const { return mPath + QLatin1Char('\\') + name; }

    static std::unique_ptr<Place> open(const QString& path)
    {
        const HANDLE handle = CreateFileW(toWide(path + QLatin1Char('\\')), FILE_READ_ATTRIBUTES,
                                          FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING,
                                          FILE_FLAG_BACKUP_SEMANTICS, nullptr);
        return handle == INVALID_HANDLE_VALUE ? nullptr : std::make_unique<Place>(path, handle);
    }

    const QString mPath;
    const HANDLE mHandle;
};

ZipFolder::ZipFolder(std::unique_ptr<Place> place) : mPlace(std::move(place)) {}

ZipFolder::~ZipFolder() = default;

std::unique_ptr<ZipFolder> ZipFolder::openRoot(const QString& path)
{
    try {
        QString systemPath = GPathName(path).GetSystemPath();
        if (systemPath.endsWith(QLatin1Char('\\')))
            systemPath.chop(1);
        std::unique_ptr<Place> place = Place::open(systemPath);
        return place == nullptr ? nullptr : std::unique_ptr<ZipFolder>(new ZipFolder(std::move(place)));
    } catch (const GException&) {
        return nullptr;  // a path that Windows can't take is the path of no folder
    }
}

std::unique_ptr<ZipFolder> ZipFolder::openFolder(const QString& name) const
{
    const QString path = mPlace->getChild(name);
    std::unique_ptr<Place> place = Place::open(path);
    if (place == nullptr || !isFolderProper(path))
        return nullptr;
    return std::unique_ptr<ZipFolder>(new ZipFolder(std::move(place)));
}

bool ZipFolder::makeFolder(const QString& name) const
{
    return CreateDirectoryW(toWide(mPlace->getChild(name)), nullptr) != 0;
}

std::unique_ptr<ZipFile> ZipFolder::makeFile(const QString& name) const
{
    const HANDLE handle = CreateFileW(toWide(mPlace->getChild(name)), GENERIC_WRITE | DELETE, FILE_SHARE_READ,
                                      nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE)
        return nullptr;
    setGoingWithHandle(handle, true);
    return std::make_unique<ZipFile>(reinterpret_cast<intptr_t>(handle));
}

std::unique_ptr<ZipFile> ZipFolder::makeNameless() const
{
    return nullptr;
}

bool ZipFolder::giveName(const ZipFile&, const QString&) const
{
    return false;
}

bool ZipFolder::keep(const ZipFile& file)
{
    return setGoingWithHandle(reinterpret_cast<HANDLE>(file.mHandle), false);
}

ZipFolder::Found ZipFolder::look(const QString& name, FileIdentity& identity) const
{
    const QString path = mPlace->getChild(name);
    const DWORD attributes = GetFileAttributesW(toWide(path));
    if (attributes == INVALID_FILE_ATTRIBUTES)
        return Found::Nothing;
    const HANDLE handle = CreateFileW(toWide(path), FILE_READ_ATTRIBUTES, cShareAll, nullptr, OPEN_EXISTING,
                                      FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr);
    if (handle != INVALID_HANDLE_VALUE) {
        identity = getIdentityOf(handle).value_or(identity);
        CloseHandle(handle);
    }
    if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0)
        return Found::Link;
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0)
        return Found::Other;
    return (attributes & FILE_ATTRIBUTE_READONLY) != 0 ? Found::ReadOnlyFile : Found::File;
}

// Whoever has a file open for a moment, such as a virus scanner, is waited for.
bool ZipFolder::replaceFile(const QString& from, const QString& to) const
{
    constexpr int cMostAttempts = 80;
    constexpr DWORD cPause = 25;  // milliseconds
    for (int attempt = 1;; ++attempt) {
        if (MoveFileExW(toWide(mPlace->getChild(from)), toWide(mPlace->getChild(to)),
                        MOVEFILE_REPLACE_EXISTING))
            return true;
        const DWORD error = GetLastError();
        if (attempt == cMostAttempts || (error != ERROR_ACCESS_DENIED && error != ERROR_SHARING_VIOLATION &&
                                         error != ERROR_LOCK_VIOLATION))
            return false;
        Sleep(cPause);
    }
}

QString ZipFolder::getPath(const QString& name) const
{
    return mPlace->getChild(name);
}

bool ZipFolder::removeFolder(const QString& name) const
{
    return RemoveDirectoryW(toWide(mPlace->getChild(name))) != 0;
}

bool ZipFolder::addMode(int) const
{
    return true;
}
}  // namespace Morvane
