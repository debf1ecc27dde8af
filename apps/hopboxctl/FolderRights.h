#pragma once

#include <QString>

// Who may change what is in a folder, as far as the system keeps that as rights of the folder.
namespace FolderRights
{
// Whether others than the owner may: his group, or everybody. On Windows, whether one of the groups may to
// which people belong without being named. False where the rights can't be read.
bool MayOthersWrite(const QString& folder);

// Whether everybody may, as above.
bool MayAnybodyWrite(const QString& folder);

// Takes that right from others. False when it can't be done.
[[nodiscard]] bool CloseToOthers(const QString& folder);

// The commands of the system that take it from others, or from everybody.
QString GetClosingCommand(const QString& folder);
QString GetCommandAgainstAnybody(const QString& folder);
}  // namespace FolderRights
