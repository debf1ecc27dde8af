#include "plugin/boundary/TableHost.h"

#include "plugin/boundary/TableCommands.h"
#include "plugin/boundary/TableDocuments.h"
#include "plugin/boundary/TableObject.h"
#include "plugin/host/HostFault.h"

namespace
{
using Table = hopbox_host_table;

class Menus final : public TableObject<IMenuManager>
{
public:
    using TableObject::TableObject;

    void AddMenuItem(ActionID action, const PMString& menuPath, double position,
                     const MenuItemFlags&) override
    {
        const Boundary::PassedText menu(menuPath.GetString());
        mHost.Call(&Table::add_menu_item, action, &menu.Get(), position);
    }
};

class Actions final : public TableObject<IActionManager>
{
public:
    using TableObject::TableObject;

    // A host that can't tell makes its entries itself.
    bool IsActionKnown(ActionID action) const override
    {
        int32_t isKnown = 0;
        return mHost.Call(&Table::is_action_known, action, &isKnown) != HOPBOX_OK || isKnown != 0;
    }

    void AddAction(ClassID, ActionID action, const PMString&, const PMString& area,
                   const ActionFlags&) override
    {
        const Boundary::PassedText text(area.GetString());
        mHost.Call(&Table::add_action, action, &text.Get());
    }

    HostPtr<IMenuManager> QueryMenuManager() const override
    {
        return MakeTableObject<Menus, IMenuManager>(mHost);
    }
};

class Application final : public TableObject<IApplication>
{
public:
    using TableObject::TableObject;
    HostPtr<IActionManager> QueryActionManager() const override
    {
        return MakeTableObject<Actions, IActionManager>(mHost);
    }
};

class Session final : public TableObject<ISession>
{
public:
    using TableObject::TableObject;
    HostPtr<IApplication> QueryApplication() const override
    {
        return MakeTableObject<Application, IApplication>(mHost);
    }
    HostPtr<IBookManager> QueryBookManager() const override { return TableDocuments::MakeBookManager(mHost); }
};

class Units final : public TableObject<IUnitOfMeasureSettings>
{
public:
    using TableObject::TableObject;

    ClassID GetHorizontalUnit() const override
    {
        int32_t unit = HOPBOX_POINTS;
        if (mHost.Call(&Table::get_unit, &unit) != HOPBOX_OK)
            return HostUnitID::cPoints;
        switch (unit) {
            case HOPBOX_PICAS:
                return HostUnitID::cPicas;
            case HOPBOX_INCHES:
                return HostUnitID::cInches;
            case HOPBOX_CENTIMETRES:
                return HostUnitID::cCentimetres;
            case HOPBOX_MILLIMETRES:
                return HostUnitID::cMillimetres;
            default:
                return HostUnitID::cPoints;
        }
    }
};

class ModalUtils final : public TableObject<IModalUtils>
{
public:
    using TableObject::TableObject;

    ModalToken AcquireModalToken() override
    {
        uint64_t token = cNoModalToken;
        return mHost.Call(&Table::begin_modal, &token) == HOPBOX_OK ? token : cNoModalToken;
    }

    void HandBackModalToken(ModalToken token) override { mHost.EndModal(token); }
};
}  // namespace

void TableHost::Release(hopbox_handle handle) const noexcept
{
    if (mTable.release != nullptr)
        HostFault::Contain("hopbox_host_table::release", [&] { mTable.release(mHost, handle); });
}

void TableHost::EndModal(ModalToken token) const
{
    if (mTable.end_modal != nullptr)
        mTable.end_modal(mHost, token);
}

ErrorCode TableHost::Run(hopbox_handle command) const
{
    return Call(&Table::run_command, command) == HOPBOX_OK ? cSuccess : cFailure;
}

HostPtr<ISession> TableHost::QuerySession()
{
    return MakeTableObject<Session, ISession>(*this);
}

HostPtr<IUnitOfMeasureSettings> TableHost::QueryUnitPreferences(IActiveContext*)
{
    return MakeTableObject<Units, IUnitOfMeasureSettings>(*this);
}

HostPtr<ILayoutUtils> TableHost::QueryLayoutUtils()
{
    return TableDocuments::MakeLayoutUtils(*this);
}

HostPtr<IDocumentUtils> TableHost::QueryDocumentUtils()
{
    return TableDocuments::MakeDocumentUtils(*this);
}

HostPtr<IModalUtils> TableHost::QueryModalUtils()
{
    return MakeTableObject<ModalUtils, IModalUtils>(*this);
}

HostPtr<ICommand> TableHost::CreateCommand(ClassID command)
{
    return TableCommands::Make(*this, command);
}

ErrorCode TableHost::ProcessCommand(ICommand& command)
{
    return TableCommands::Run(command);
}

HostPtr<IObjectModel> TableHost::QueryObjectModel()
{
    return TableCommands::MakeObjectModel(*this);
}

int32_t TableHost::ModalAlert(const PMString& text, const PMString& button1, const PMString& button2,
                              const PMString& button3, int32_t defaultButton, int32_t cancelButton)
{
    const Boundary::PassedText shown(text.GetString());
    const Boundary::PassedText first(button1.GetString());
    const Boundary::PassedText second(button2.GetString());
    const Boundary::PassedText third(button3.GetString());
    const hopbox_text buttons[3] = {first.Get(), second.Get(), third.Get()};
    int32_t pressed = 0;
    const int32_t result =
        Call(&Table::show_alert, &shown.Get(), &buttons[0], defaultButton, cancelButton, &pressed);
    return result == HOPBOX_OK ? pressed : 0;
}
