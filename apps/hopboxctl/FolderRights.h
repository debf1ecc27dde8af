#pragma once

#include <QString>

// Who may change what is in a folder, as far as the system keeps that as rights of the folder.
namespace FolderRights
{
// Whether others than the owner may. False on Windows, whose lists of rights are inherited from the user's
// profile.
bool MayOthersWrite(const QString& folder);

// Whether everybody may, as above.
bool MayAnybodyWrite(const QString& folder);

// Leaves that right to the owner only. False when it can't be done.
[[nodiscard]] bool CloseToOthers(const QString& folder);
}  // namespace FolderRights
