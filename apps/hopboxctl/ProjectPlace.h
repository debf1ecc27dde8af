#pragma once

#include "foundation/core/GPathName.h"
#include "foundation/system/GOwnedFile.h"

#include <memory>
#include <vector>

// Where hopboxctl puts the Hopboxes that it makes.
namespace ProjectPlace
{
// The build of the Hopbox application that these Hopboxes are for: one that takes a file package by its URL.
constexpr int cBuild = 700000;

// Where the application of that build is, when no other is named.
GPathName GetDefaultApplication();

// The path of the archive in a project folder.
GPathName GetArchivePath(const GPathName& folder);

// Whether a project archive lies where this program puts them: under the fixed name, in a folder of its own
// below the settings folder.
bool IsOurs(const GPathName& archive);

// Whether it lies under such a name in a settings folder that is not this user's, as in a registry that was
// copied by hand.
bool IsOfAnotherUser(const GPathName& archive);

// Removes an archive of ours, and its folder when nothing else is in it. False when something that should
// have gone is still there.
[[nodiscard]] bool Remove(const GPathName& archive);

// A folder for a new project, made with the folders above it that were missing. Unless it is kept, all of
// them go again with this object, whatever was put into the new one included. As long as it is not kept, a
// file in it that this process owns says that it is being made; each new one removes what killed makers left.
class NewFolder
{
public:
    // Raises when the folder can't be made, or the registry, which tells what is in use, can't be read.
    explicit NewFolder(const QString& hopboxName);
    ~NewFolder();
    NewFolder(const NewFolder&) = delete;
    NewFolder& operator=(const NewFolder&) = delete;

    // The path for the project archive in it.
    GPathName GetArchivePath() const;

    void Keep();

private:
    void MakeOwned(const GString& name);

    std::vector<GPathName> mMissing;  // the folders above that were not there, the lowest first
    GPathName mPath;
    std::unique_ptr<GOwnedFile> mOwner;  // none when the folder is kept
};
}  // namespace ProjectPlace
