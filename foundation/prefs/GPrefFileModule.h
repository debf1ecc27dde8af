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
// and replaced whole and durably when it is flushed (see GDurableFile). A missing file is an empty one; it
// comes with the first flush after a change. The file's folder has to be there by then.
//
// Of a file that is damaged what can be read is taken. Before the first write takes its place the damaged
// file is kept beside it (see GDamagedCopies), and the log says so; a write that can't keep it raises.
// A file that is there but can't be read is not overwritten: a flush raises until a Refresh has read it. Only
// where the system says that there is no such file does it count as missing.
class GPrefFileModule : public GPrefModule
{
public:
    // Reads the file, in the encoding, or in that whose mark it begins with. A failure of that is logged, and
    // the module starts empty.
    GPrefFileModule(const GPathName& path, const GEncodingRef& encoding);

    // Raise a GCustomException with GErrorCode::cFile when the file can't be read or written.
    void ReadDict() override;
    void WriteDict() override;

    // Writes all of it to another file, which is the module's from then on.
    virtual void SaveAs(const GPathName& path);

    const GPathName& GetPathName() const { return mPath; }

    // The damage that the last read of the file met; none when it was read whole.
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

    // Reads the file, if it is there, in the encoding, null to find it, or in that whose mark it begins with;
    // the module holds it and is not dirty then. Of a file whose reading breaks off it holds nothing.
    void ReadFile(const GEncodingRef& encoding);

    // Replaces the file; the module is not dirty then.
    void WriteFile();

    // Whether the system says that there is no such file; false also where it could not look.
    bool IsMissing() const;

private:
    void ReadThere(const GEncodingRef& encoding);
    void NoteUnread(const GException& error);
    void KeepDamaged();

    GPathName mPath;
    std::optional<PrefDamage> mDamage;
    GString mUnreadReason;
};
