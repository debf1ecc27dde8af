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
// target with it; on POSIX the folder is flushed too. Every reader sees the whole old file or the whole new
// file, even if this process or the machine stops at any moment. Without Commit the old file stays and the
// temporary file is removed.
//
// The new file has the rights of the old one, and on POSIX its owner as far as the system allows. If the
// target is a symbolic link, the file that it leads to is replaced and the link stays. The target's folder
// must exist. If the system can't tell what the target is, it is not replaced. Two processes can write the
// same target at once: one of the two files is the result. A writer that is killed exactly while it replaces
// the file can leave its temporary file, which has a name as in PTemporaryName. The next writer of the target
// removes that file, unless a living process owns it. For POSIX see GOwnedFile; on Windows, where processes
// see each other, the process in the name shows it.
//
// On Windows the target can't be replaced while somebody has it open. Commit tries again for about two
// seconds. Then it uses the system's other way, which works if the readers share deletion, but has more than
// one step. If it is killed in between, the next reader or writer repairs what is left (PReplacedFile). So
// open such a file with all share rights, and only as long as a read takes. Used by one thread.
class GDurableFile : public GOutputStream
{
public:
    // Starts to write. Raises a GCustomException with GErrorCode::cFile and the system's reason, as the other
    // operations do. After an operation has raised, the object can only be destroyed.
    //
    // `access` is used only for a new file: it gets the rights of any new file of this user, or is for its
    // owner only.
    enum class Access
    {
        cUsual,
        cOwnerOnly
    };
    explicit GDurableFile(const GPathName& target, Access access = Access::cUsual);

    // All steps in one call: afterwards the file at the native path has the content, or is as it was.
    static GResult Replace(const GString& path, const GBuffer& content);

    // Drops what was not committed.
    ~GDurableFile() override;

    void Write(const char* bytes, int count) override;

    // Replaces bytes that are already written, or writes after the last one; for formats that change what
    // they have written before. It uses no buffer, and must not be used on a file together with Write().
    void WriteAt(int64_t offset, const char* bytes, int count);

    // The path of the new file until it is in place; empty while it has no name.
    const GPathName& GetTemporaryPath() const { return mTemporary; }

    // Flushes everything that was written to disk, under a temporary name, so that little can fail when
    // Commit puts the file in place. For callers that must first make room for the file.
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
    GBuffer mBuffer;  // what has not been given to the system yet
};
