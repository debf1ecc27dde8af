#pragma once

#include "plugin/host/HostIdentifiers.h"
#include "plugin/host/PMString.h"

class IActiveContext;
class IHostObject;

// The actions whose states the host wants to know, before it shows a menu.
class IActionStateList
{
public:
    virtual int32_t Length() const = 0;

    // The action at an index from 0.
    virtual ActionID GetNthAction(int32_t index) const = 0;

    virtual void SetNthActionEnabled(int32_t index, bool isEnabled) = 0;
    virtual void SetNthActionName(int32_t index, const PMString& name) = 0;

    // The keyboard shortcut that the entry bears while the user has set none, such as "Alt+Shift+E".
    virtual void SetNthActionShortcut(int32_t index, const PMString& shortcut) = 0;

protected:
    ~IActionStateList() = default;
};

// Answers for the actions that it owns.
class IActionComponent
{
public:
    // The user chose an action. The widget is the one that the choice came from; it may be null.
    virtual void DoAction(IActiveContext* context, ActionID action, IHostObject* widget) = 0;

    // Sets the states of those actions of the list that are the component's own.
    virtual void UpdateActionStates(IActiveContext* context, IActionStateList& states) = 0;

protected:
    ~IActionComponent() = default;
};

// The base of action components: knows no action and changes no state.
class CActionComponent : public IActionComponent
{
public:
    CActionComponent() = default;
    virtual ~CActionComponent();
    CActionComponent(const CActionComponent&) = delete;
    CActionComponent& operator=(const CActionComponent&) = delete;

    void DoAction(IActiveContext* context, ActionID action, IHostObject* widget) override;
    void UpdateActionStates(IActiveContext* context, IActionStateList& states) override;
};
