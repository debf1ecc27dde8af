#include "hopbox/StartShortcut.h"

#include "foundation/system/PCom.h"
#include "tests/support/Test.h"

#include <QtEndian>

#include <windows.h>

#include <shlobj.h>

namespace
{
// What a shell link says, read by the shell.
struct Link
{
    QString target, arguments, description, icon, folder;
    int iconIndex = -1;
};

QString GetText(const wchar_t* text)
{
    return QString::fromWCharArray(text);
}

Link Describe(IShellLinkW& shellLink)
{
    Link link;
    wchar_t text[INFOTIPSIZE];
    EXPECT_TRUE(SUCCEEDED(shellLink.GetPath(text, MAX_PATH, nullptr, SLGP_RAWPATH)));
    link.target = GetText(text);
    EXPECT_TRUE(SUCCEEDED(shellLink.GetArguments(text, INFOTIPSIZE)));
    link.arguments = GetText(text);
    EXPECT_TRUE(SUCCEEDED(shellLink.GetDescription(text, INFOTIPSIZE)));
    link.description = GetText(text);
    EXPECT_TRUE(SUCCEEDED(shellLink.GetIconLocation(text, MAX_PATH, &link.iconIndex)));
    link.icon = GetText(text);
    EXPECT_TRUE(SUCCEEDED(shellLink.GetWorkingDirectory(text, MAX_PATH)));
    link.folder = GetText(text);
    return link;
}

Link ReadLink(const QString& path)
{
    const PComApartment apartment;
    PComReference<IShellLinkW> shellLink;
    PComReference<IPersistFile> file;
    EXPECT_TRUE(SUCCEEDED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW,
                                           shellLink.GetAddress())));
    EXPECT_TRUE(SUCCEEDED(shellLink->QueryInterface(IID_IPersistFile, file.GetAddress())));
    const QString nativePath = QDir::toNativeSeparators(path);
    if (SUCCEEDED(file->Load(reinterpret_cast<const wchar_t*>(nativePath.utf16()), STGM_READ)))
        return Describe(*shellLink.Get());
    ADD_FAILURE() << "The shell can't read the link.";
    return {};
}

// How the window starts, from the header of the file: not every shell that reads a link takes it over.
int ReadShowCommand(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray header = file.read(0x4C);
    return header.size() == 0x4C ? qFromLittleEndian<qint32>(header.constData() + 0x3C) : -1;
}

QString GetInterpreter()
{
    wchar_t folder[MAX_PATH];
    GetSystemDirectoryW(folder, MAX_PATH);
    return GetText(folder) + QLatin1String("\\cmd.exe");
}
}  // namespace

TEST(StartShortcut, TheShellReadsBackEveryField)
{
    const Sandbox sandbox;
    const QString path = sandbox.GetPath("\u65E5.lnk"_q);
    ASSERT_TRUE(MakeStartShortcut("Gr\u00F6\u00DFe 1"_q, GPathName("C:/Jobs/\u65E5 b"_q), GPathName(path)));
    const Link link = ReadLink(path);
    EXPECT_EQ(link.target.toLower(), GetInterpreter().toLower());
    EXPECT_EQ(link.arguments, "/C cd C:\\Jobs\\\u65E5 b && start Gr\u00F6\u00DFe 1.exe"_q);
    EXPECT_EQ(link.description, "Gr\u00F6\u00DFe 1"_q);
    EXPECT_EQ(link.icon, "C:\\Jobs\\\u65E5 b\\Gr\u00F6\u00DFe 1.exe"_q);
    EXPECT_EQ(link.iconIndex, 0);
    EXPECT_EQ(ReadShowCommand(path), SW_SHOWMINNOACTIVE);
    EXPECT_EQ(link.folder, "C:\\Jobs\\\u65E5 b"_q);
}

TEST(StartShortcut, AFolderThatIsNotThereTakesNoShortcut)
{
    const Sandbox sandbox;
    const GPathName shortcut(sandbox.GetPath("none/a.lnk"_q));
    EXPECT_FALSE(MakeStartShortcut("a"_q, GPathName(sandbox.GetPath()), shortcut));
}
