#include "hopbox/HopboxFolder.h"

#include "archive/ZipEntryPath.h"
#include "foundation/system/GSystemError.h"
#include "foundation/system/GSystemFolders.h"
#include "foundation/system/GUniqueName.h"

#include <QFileInfo>

namespace
{
// File systems hold names of 255 bytes; the rest is for what is added to make a name unique.
constexpr int cLongestName = 240;  // bytes of UTF-8
constexpr int cAttempts = 100;

const QLatin1Char cReplacement('_');

bool IsReserved(QChar character)
{
    return character.category() == QChar::Other_Control || QStringLiteral("/\\<>:\"|?*").contains(character);
}

bool IsHalfPair(const GString& text, int at)
{
    const QChar character = text.at(at);
    if (character.isHighSurrogate())
        return at + 1 == text.size() || !text.at(at + 1).isLowSurrogate();
    return character.isLowSurrogate() && (at == 0 || !text.at(at - 1).isHighSurrogate());
}

GString Cut(const GString& name)
{
    GString cut = name.left(cLongestName);
    while (cut.toUtf8().size() > cLongestName)
        cut.chop(1);
    if (cut.size() < name.size() && cut.at(cut.size() - 1).isHighSurrogate())
        cut.chop(1);
    return cut;
}

void ReplaceOpenEnd(GString& name)
{
    for (int at = name.size() - 1; at >= 0; --at) {
        if (name.at(at) != QLatin1Char('.') && name.at(at) != QLatin1Char(' '))
            break;
        name[at] = cReplacement;
    }
}
}  // namespace

GString HopboxFolder::MakeName(const GString& text)
{
    GString name = text;
    for (int at = 0; at < text.size(); ++at) {
        if (IsReserved(text.at(at)) || IsHalfPair(text, at))
            name[at] = cReplacement;
    }
    name = Cut(name);
    ReplaceOpenEnd(name);
    // What is refused now is empty or a device of Windows.
    return Morvane::ZipEntryPath(name).isSafe() ? name : cReplacement + name;
}

GPathName HopboxFolder::MakeFresh(const GPathName& parent, const GString& name)
{
    GPathName path = parent.GetChild(name);
    for (int attempt = 0; attempt < cAttempts; ++attempt) {
        if (GSystemFolders::MakeFolder(path))
            return path;
        const boost::system::error_code reason = GetLastSystemError();
        if (!QFileInfo::exists(path.GetNativePath()))
            RaiseFileError(QStringLiteral("The folder \"%1\" can't be made"), path, reason);
        path = parent.GetChild(name + cReplacement + MakeRandomName(5));
    }
    RaiseFileError(QStringLiteral("The folder \"%1\" can't be made"), path,
                   boost::system::errc::make_error_code(boost::system::errc::file_exists));
}
