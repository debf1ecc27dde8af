#pragma once

#include "foundation/core/GOutputStream.h"
#include "foundation/core/GPathName.h"
#include "foundation/core/GResult.h"
#include "foundation/core/GString.h"
#include "foundation/core/PTemporaryName.h"
#include "foundation/system/PFileHandle.h"

// Writes a file whole and puts it in place of the old one in one step.
//
// What is written goes to a temporary file beside the target. Commit flushes it to disk and replaces the
// target with it; on POSIX the folder is flushed too. Whoever reads the target, and whoever kills this
// process or the machine at any moment, sees the old file or the new one, never a part. Without Commit the
// old file stays and the temporary one goes.
//
// The new file has the rights of the old one, and on POSIX its owner as far as the system allows. Where the
// target is a symbolic link, the file that it leads to is replaced and the link stays. The target's folder
// must be there. A target that can't even be looked at is not replaced. Two writers of one target at once do
// each other no harm: one of the two files results. A writer that is killed at the very moment of replacing
// can leave its temporary file, named as PTemporaryName says. The next
// writer of the target removes it, unless a living process owns it: on POSIX see GOwnedFile; on Windows,
// where processes see each other, the process in the name tells.
//
// On Windows whoever has the target open holds the replacement up; Commit tries again for about two seconds,
// then it takes the system's other way, which works while readers share deletion, but is not one step:
// what it leaves when it is killed in between, the next reader or writer puts right (PReplacedFile).
// So open such a file with all share rights, and no longer than a read takes. Used by one thread.
class GDurableFile : public GOutputStream
{
public:
    // Starts to write. Raises a GCustomException with GErrorCode::cFile and the system's reason, as the other
    // operations do; after one has raised, the object is only good to be destroyed.
    //
    // `access` is for a file that is not there yet: as for any new file of this user, or for its owner only.
    enum class Access
    {
        cUsual,
        cOwnerOnly
    };
    explicit GDurableFile(const GPathName& target, Access access = Access::cUsual);

    // All in one: the file at the native path has the content afterwards, or is as it was.
    static GResult Replace(const GString& path, const GBuffer& content);

    // Drops what was not committed.
    ~GDurableFile() override;

    void Write(const char* bytes, int count) override;

    // Writes over bytes that are there, or behind the last one; for formats that go back to what they have
    // written. Without a buffer, and not for a file that Write() is used on, too.
    void WriteAt(int64_t offset, const char* bytes, int count);

    // Where the new file is until it is in place; empty while it has no name.
    const GPathName& GetTemporaryPath() const { return mTemporary; }

    // Brings everything that was written to disk, under a passing name, so that little is left that can fail
    // when Commit puts the file in place. For who has to make room for it in between.
    void Prepare();

    // Puts the new file in place. Called once, at the end.
    void Commit();

private:
    static const PTemporaryName::Maker& GetOwnMaker();

    // The platform's half.
    static GPathName FollowLinks(const GPathName& target);
    void OpenTemporary();
    void OpenOwned(uint32_t mode, int attempt);  // POSIX alone
    [[noreturn]] void FailToOpen();              // POSIX alone
    void WriteNow(const char* bytes, int count);
    void FlushToDisk();
    void GiveName();
    void PutInPlace();
    void RemoveTemporary() noexcept;
    static void RemoveLeftover(const GPathName& path, const PTemporaryName::Maker& maker);

    GPathName MakeTemporaryName() const;
    void RemoveLeftovers() const;
    void FlushBuffer();
    [[noreturn]] void RaiseWriteError() const;

    GPathName mTarget;
    Access mAccess;
    GPathName mTemporary;  // empty while the temporary file has no name, and when there is none
    PFileHandle mHandle;
    GBuffer mBuffer;  // what has not been handed to the system yet
};
