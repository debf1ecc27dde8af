#pragma once

#include "foundation/core/GString.h"

// What all actions of the plug-in have in common: their names, and whether they may run.
class GCPTAbstractAction
{
public:
    // Active; the names are translated to the language whose translations are loaded now.
    GCPTAbstractAction();
    virtual ~GCPTAbstractAction();
    GCPTAbstractAction(const GCPTAbstractAction&) = delete;
    GCPTAbstractAction& operator=(const GCPTAbstractAction&) = delete;

    bool IsActive() const { return mIsActive; }
    void SetActive(bool isActive) { mIsActive = isActive; }

    const GString& GetMenuName() const { return mMenuName; }
    const GString& GetTitle() const { return mTitle; }

private:
    bool mIsActive = true;
    GString mMenuName;
    GString mTitle;
};
