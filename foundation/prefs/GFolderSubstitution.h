#pragma once

#include "foundation/prefs/GVariableSubstitution.h"

// Stores the path of a folder, or a path below it, with a variable, such as "%MorvaneUserPreferences%",
// instead of the folder:
//
//     C:\Users\ann\AppData\Roaming\Morvane Prefs Folder\a\b  is stored as  %MorvaneUserPreferences%/a/b
//
// To decide whether a path is below the folder, whole names are compared, with the system's rule for case.
// The folder is a special path, looked up at each call. Only values that are path names are changed: another
// text that looks like a path stays as it is.
class GFolderSubstitution : public GVariableSubstitution
{
public:
    // `variable` includes its percent signs.
    GFolderSubstitution(const GString& variable, int32_t specialPath);

    bool IsResponsible(Kind kind) const override;
    GString InsertVariables(const GString& text) const override;
    GString ReplaceVariables(const GString& text) const override;

private:
    GString mVariable;
    int32_t mSpecialPath;
};
