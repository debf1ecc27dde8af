#pragma once

#include "plugin/host/HostIdentifiers.h"
#include "plugin/host/PMString.h"

#include <optional>

class IActiveContext;
class IHostObject;

// The actions whose states the host asks for before it shows a menu.
class IActionStateList
{
public:
    virtual int32_t Length() const = 0;

    // The action at an index from 0.
    virtual ActionID GetNthAction(int32_t index) const = 0;

    virtual void SetNthActionEnabled(int32_t index, bool isEnabled) = 0;
    virtual void SetNthActionName(int32_t index, const PMString& name) = 0;

    // The entry's default keyboard shortcut, such as "Alt+Shift+E".
    virtual void SetNthActionShortcut(int32_t index, const PMString& shortcut) = 0;

protected:
    ~IActionStateList() = default;
};

// What a user would choose in the dialog.
struct ExportChoices
{
    PMString hopbox;                      // its name or its registry key
    PMString pages;                       // such as "1-3,8"; empty for all
    std::optional<bool> includesPackage;  // not set: as the Hopbox's settings say
};

enum class ExportResult
{
    Done,       // a Hopbox process has taken it
    Failed,     // the reason is the text that an alert would show
    Cancelled,  // by the user, in the host's progress window
    Busy,       // another action runs
    Unsupported
};

// Answers for the actions that it owns.
class IActionComponent
{
public:
    // The user chose an action. The widget is the one that the choice came from; it may be null.
    virtual void DoAction(IActiveContext* context, ActionID action, IHostObject* widget) = 0;

    // Sets the states of those actions in the list that belong to the component.
    virtual void UpdateActionStates(IActiveContext* context, IActionStateList& states) = 0;

    // Exports without a dialog and without an alert, for a host's command line and scripts. Does what
    // DoAction does once the user has made these choices. Gives Unsupported for an action that exports
    // nothing, and for pages of a book. Sets `error` when it gives Failed.
    virtual ExportResult Export(ActionID action, const ExportChoices& choices, PMString& error) = 0;

protected:
    ~IActionComponent() = default;
};

// The base class of action components. It owns no action and changes no state.
class CActionComponent : public IActionComponent
{
public:
    CActionComponent() = default;
    virtual ~CActionComponent();
    CActionComponent(const CActionComponent&) = delete;
    CActionComponent& operator=(const CActionComponent&) = delete;

    void DoAction(IActiveContext* context, ActionID action, IHostObject* widget) override;
    void UpdateActionStates(IActiveContext* context, IActionStateList& states) override;
    ExportResult Export(ActionID action, const ExportChoices& choices, PMString& error) override;
};
