#include "hopbox/HopboxHandOff.h"
#include "tests/support/PrinterProcessor.h"
#include "tests/support/Test.h"

#include <sys/stat.h>
#include <unistd.h>

namespace
{
// Another group than the usual that this user may give a file to; the usual where he has no other.
gid_t GetOtherGroup()
{
    if (geteuid() == 0)
        return 54321;
    std::vector<gid_t> groups(1000);
    const int count = getgroups(static_cast<int>(groups.size()), groups.data());
    return count > 0 ? groups.at(static_cast<size_t>(count) - 1) : getegid();
}

class UmaskOf
{
public:
    explicit UmaskOf(mode_t mask) : mBefore(umask(mask)) {}
    ~UmaskOf() { umask(mBefore); }
    UmaskOf(const UmaskOf&) = delete;
    UmaskOf& operator=(const UmaskOf&) = delete;

private:
    mode_t mBefore;
};
}  // namespace

TEST(RightsTest, WhatArrivesIsForWhomTheInboxIs)
{
    const std::tuple<mode_t, const char*, mode_t, mode_t> cases[] = {
        {0022, "", 0644, 0755},           {0007, "", 0660, 0770},
        {0077, "", 0600, 0700},           {0077, "--mode|0640", 0640, 0750},
        {0022, "--mode|604", 0604, 0705},
    };
    for (const auto& [masked, option, file, folder] : cases) {
        SCOPED_TRACE(masked);
        SCOPED_TRACE(option);
        const UmaskOf mask(masked);
        const Sandbox sandbox;
        const QString inbox = sandbox.GetPath("new/in"_q);
        WriteFile(sandbox.GetPath("job/sub/a.pdf"_q), "1");
        QFile::setPermissions(sandbox.GetPath("job/sub/a.pdf"_q), QFile::ReadOwner);
        QStringList call = {"--inbox"_q, inbox};
        if (*option != '\0')
            call += QString::fromLatin1(option).split(QLatin1Char('|'));
        PrinterProcessor receiver(sandbox, call);
        struct stat status = {};
        ASSERT_EQ(stat(inbox.toUtf8().constData(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777, 0777 & ~masked) << "of the inbox, which is made";
        ASSERT_EQ(stat((inbox + "/.printer-processor"_q).toUtf8().constData(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777, 0700U);
        ASSERT_EQ(chown(inbox.toUtf8().constData(), static_cast<uid_t>(-1), GetOtherGroup()), 0);
        EXPECT_TRUE(HopboxHandOff::SubmitJob("Press"_q, sandbox.GetPath("job"_q)));
        const QString saved = receiver.ReadLine().value("saved"_q).toString();
        for (const char* name : {"", "/sub", "/sub/a.pdf"}) {
            ASSERT_EQ(stat((saved + QLatin1String(name)).toUtf8().constData(), &status), 0);
            EXPECT_EQ(status.st_gid, GetOtherGroup()) << name;
            EXPECT_EQ(status.st_mode & 0777, S_ISDIR(status.st_mode) ? folder : file) << name;
        }
    }
}
