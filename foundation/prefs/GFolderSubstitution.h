#pragma once

#include "foundation/prefs/GVariableSubstitution.h"

// Stores a path in or below a folder with a variable, such as "%MorvaneUserPreferences%", in the folder's
// place:
//
//     C:\Users\ann\AppData\Roaming\Morvane Prefs Folder\a\b  is stored as  %MorvaneUserPreferences%/a/b
//
// A path counts as below the folder by whole names and by the system's rule of case. The folder is a special
// path, looked up at each call. Responsible for path names only: another text that looks like a path stays as
// it is.
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
