#pragma once

#include "foundation/core/GPathName.h"
#include "foundation/prefs/GPrefModule.h"

#include <cstdint>
#include <functional>
#include <optional>

class GException;

// The damage of a settings file that was read.
struct PrefDamage
{
    GPathName file;
    int64_t position;  // the byte of the file where it begins
    bool isEmpty;      // the file holds no byte, and there is nothing to keep
    GPathName kept;    // the copy of the damaged file, once a write has taken its place; empty before
};

// Settings in a file of their own, in the preference text format. The file is read when the module is made
// and replaced whole and durably when it is flushed (see GDurableFile). A missing file counts as empty; the
// first flush after a change makes it. The file's folder must exist then.
//
// From a damaged file, the readable part is used. Before the first write replaces the damaged file, a copy of
// it is kept beside it (see GDamagedCopies), and the log says so; if the copy can't be made, the write
// raises. A file that is there but can't be read is not overwritten: a flush raises until a Refresh has read
// it. A file counts as missing only if the system says that there is no such file.
class GPrefFileModule : public GPrefModule
{
public:
    // Reads the file in the given encoding, or in the one that its byte order mark tells. A failure is
    // logged, and the module starts empty.
    GPrefFileModule(const GPathName& path, const GEncodingRef& encoding);

    // These raise a GCustomException with GErrorCode::cFile when the file can't be read or written.
    void ReadDict() override;
    void WriteDict() override;

    // Writes everything to another file, which is the module's file from then on.
    virtual void SaveAs(const GPathName& path);

    const GPathName& GetPathName() const { return mPath; }

    // The damage that the last read of the file found; none when it was read whole.
    const std::optional<PrefDamage>& GetDamage() const { return mDamage; }

    // Why the last attempt to read the file failed, though it is there; empty when it was read or is missing.
    // The module is empty then, but the file may not be.
    const GString& GetUnreadReason() const { return mUnreadReason; }

protected:
    // For a derived class that reads the file in its own way, with StartWith in its constructor.
    struct Unread
    {
    };
    GPrefFileModule(const GPathName& path, const GEncodingRef& encoding, Unread);

    // Reads the file for the first time.
    void StartWith(const std::function<void()>& read);

    // Reads the file, if it is there, in the given encoding (null: find it) or in the one that its byte order
    // mark tells. The module then holds its content and is not dirty. If reading fails on the way, the module
    // is empty.
    void ReadFile(const GEncodingRef& encoding);

    // Replaces the file; the module is not dirty then.
    void WriteFile();

    // Whether the system says that there is no such file; also false if the system can't tell.
    bool IsMissing() const;

private:
    void ReadThere(const GEncodingRef& encoding);
    void NoteUnread(const GException& error);
    void KeepDamaged();

    GPathName mPath;
    std::optional<PrefDamage> mDamage;
    GString mUnreadReason;
};
