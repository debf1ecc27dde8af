#pragma once

#include <QString>

// Gives a folder this list of rights, in the text form of the system. Windows only.
[[nodiscard]] bool SetFolderRights(const QString& path, const wchar_t* rights);
