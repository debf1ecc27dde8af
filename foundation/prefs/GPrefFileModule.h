#pragma once

#include "foundation/core/GPathName.h"
#include "foundation/prefs/GPrefModule.h"

#include <functional>

// Settings in a file of their own, in the preference text format. The file is read when the module is made
// and replaced whole and durably when it is flushed (see GDurableFile). A missing file is an empty one; it
// comes with the first flush after a change. The file's folder has to be there by then.
//
// Of a file that is damaged what can be read is taken. One that is there but can't be read is not
// overwritten: a flush raises until a Refresh has read it.
class GPrefFileModule : public GPrefModule
{
public:
    // Reads the file, in the encoding. A failure of that is logged, and the module starts empty.
    GPrefFileModule(const GPathName& path, const GEncodingRef& encoding);

    // Raise a GCustomException with GErrorCode::cFile when the file can't be read or written.
    void ReadDict() override;
    void WriteDict() override;

    // Writes all of it to another file, which is the module's from then on.
    virtual void SaveAs(const GPathName& path);

    const GPathName& GetPathName() const { return mPath; }

protected:
    // For a derived class that reads the file in its own way, with StartWith in its constructor.
    struct Unread
    {
    };
    GPrefFileModule(const GPathName& path, const GEncodingRef& encoding, Unread);

    // Reads the file for the first time.
    void StartWith(const std::function<void()>& read);

    // Reads the file, if it is there, in the encoding, null to find it; the module holds it and is not dirty
    // then.
    void ReadFile(const GEncodingRef& encoding);

    // Replaces the file; the module is not dirty then.
    void WriteFile();

    bool FileExists() const;

private:
    GPathName mPath;
    bool mIsUnread = false;  // the file is there, but the last attempt to read it failed
};
