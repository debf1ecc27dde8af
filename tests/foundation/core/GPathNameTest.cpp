#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GPathName.h"
#include "tests/support/ErrorCode.h"

#include <gtest/gtest.h>

static const bool cIsWindows = GPathName(QStringLiteral("a/b")).GetNativePath() == QLatin1String("a\\b");

static std::string Text(const GString& text)
{
    return text.toStdString();
}

static GPathName Path(const char* path)
{
    return GPathName(QString::fromUtf8(path));
}

TEST(GPathName, PathsAreTidiedAndTakenApart)
{
    const struct
    {
        const char *path, *tidy, *parent, *leaf, *stem, *extension;
    } cases[] = {
        {"", "", "", "", "", ""},
        {"/", "/", "", "", "", ""},
        {"/..", "/", "", "", "", ""},
        {"//srv/share/", "//srv/share/", "", "", "", ""},
        {"//srv/share", "//srv/share/", "", "", "", ""},
        {"//srv/share/../a", "//srv/share/a", "//srv/share/", "a", "a", ""},
        {"/a//b/./c.tar.gz/", "/a/b/c.tar.gz", "/a/b", "c.tar.gz", "c.tar", "gz"},
        {"/tmp/x/../../etc", "/etc", "/", "etc", "etc", ""},
        {"a/../..", "..", "", "..", "..", ""},
        {"../../b", "../../b", "../..", "b", "b", ""},
        {"a/..", ".", "", ".", ".", ""},
        {"job.d/.profile", "job.d/.profile", "job.d", ".profile", ".profile", ""},
        {"Gr\u00F6\u00DFe.pdf", "Gr\u00F6\u00DFe.pdf", "", "Gr\u00F6\u00DFe.pdf", "Gr\u00F6\u00DFe", "pdf"},
    };
    for (const auto& test : cases) {
        if (QByteArray(test.path).startsWith("//") && !cIsWindows)
            continue;
        SCOPED_TRACE(test.path);
        const GPathName path = Path(test.path);
        EXPECT_EQ(Text(path.GetPortablePath()), test.tidy);
        EXPECT_EQ(Text(path.GetParent().GetPortablePath()), test.parent);
        EXPECT_EQ(Text(path.GetLeaf()), test.leaf);
        EXPECT_EQ(Text(path.GetLeafWithoutExtension()), test.stem);
        EXPECT_EQ(Text(path.GetExtension()), test.extension);
        EXPECT_EQ(path, GPathName(path.GetNativePath()));
        EXPECT_EQ(path, GPathName(path.GetSystemPath()));
    }
}

TEST(GPathName, WindowsFormsFollowTheSystem)
{
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"C:/Jobs/a.pdf", "C:\\Jobs\\a.pdf", "\\\\?\\C:\\Jobs\\a.pdf"},
        {"\\\\?\\C:\\Jobs\\a.pdf", "C:\\Jobs\\a.pdf", "\\\\?\\C:\\Jobs\\a.pdf"},
        {"\\\\srv\\share\\a", "\\\\srv\\share\\a", "\\\\?\\UNC\\srv\\share\\a"},
        {"\\\\?\\UNC\\srv\\share\\a", "\\\\srv\\share\\a", "\\\\?\\UNC\\srv\\share\\a"},
        {"Jobs/a", "Jobs\\a", "Jobs\\a"},
    };
    for (const auto& [text, native, system] : cases) {
        SCOPED_TRACE(text);
        const GPathName path = Path(text);
        // Elsewhere, a backslash is a character of the name.
        EXPECT_EQ(Text(path.GetNativePath()), cIsWindows ? native : text);
        EXPECT_EQ(Text(path.GetSystemPath()), cIsWindows ? system : text);
    }
    EXPECT_EQ(Path("/Jobs/A") == Path("/jobs/a"), cIsWindows);
    EXPECT_EQ(Path("/Jobs/A/b").IsBelow(Path("/jobs/a")), cIsWindows);
}

TEST(GPathName, IllegalPathsRaise)
{
    EXPECT_EQ(GetErrorCode([] { GPathName(QString(QChar(0))); }), GErrorCode::cIllegalPath);
    for (const char* path : {"C:", "C:a", "\\\\srv", "\\\\srv\\\\a", "\\\\.\\PIPE\\a", "\\\\?\\", "C:\\a:b",
                             "a|b", "a*", "C:\\tmp\\.. \\x", "a\tb", "C:\\CON."}) {
        SCOPED_TRACE(path);
        EXPECT_EQ(GetErrorCode([&] { Path(path); }), cIsWindows ? GErrorCode::cIllegalPath : 0);
    }
    const GPathName folder = Path("/tmp");
    for (const char* child : {"", ".", "..", "a/../..", "/etc", "../tmpx"})
        EXPECT_EQ(GetErrorCode([&] { folder.GetChild(QString::fromLatin1(child)); }),
                  GErrorCode::cIllegalPath)
            << child;
    EXPECT_EQ(GetErrorCode([&] { Path("/").WithExtension(QStringLiteral("a")); }), GErrorCode::cIllegalPath);
    EXPECT_EQ(GetErrorCode([&] { folder.WithExtension(QStringLiteral("a/b")); }), GErrorCode::cIllegalPath);
    EXPECT_EQ(GetErrorCode([&] { Path("/tmpx").GetRelativeTo(folder); }), GErrorCode::cIllegalPath);
}

TEST(GPathName, OnlyWhatIsStrictlyInsideIsBelow)
{
    // text, baseText, relative: no relative path: not below
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"/tmp/a/b", "/tmp", "a/b"}, {"/tmp", "/tmp", nullptr},        {"/tmpx/a", "/tmp", nullptr},
        {"/tmp", "/", "tmp"},        {"/tmp/../etc", "/tmp", nullptr}, {"tmp/a", "/tmp", nullptr},
        {"a/b", "a", "b"},           {"../..", "..", nullptr},         {"/a", "", nullptr},
    };
    for (const auto& [text, baseText, relative] : cases) {
        SCOPED_TRACE(text);
        const GPathName path = Path(text), base = Path(baseText);
        EXPECT_EQ(path.IsBelow(base), relative != nullptr);
        if (relative != nullptr) {
            EXPECT_EQ(Text(path.GetRelativeTo(base).GetPortablePath()), relative);
            EXPECT_EQ(base.GetChild(QString::fromLatin1(relative)), path);
        }
    }
}
