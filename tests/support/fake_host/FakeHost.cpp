#include "tests/support/fake_host/FakeHost.h"

#include "plugin/host/HostCalls.h"
#include "tests/support/fake_host/FakeCommands.h"
#include "tests/support/fake_host/FakeDocuments.h"

#include <algorithm>
#include <stdexcept>

namespace
{
class FakeMenuManager : public FakeObject<IMenuManager>
{
public:
    explicit FakeMenuManager(FakeHost& host) : FakeObject(host, "IMenuManager") {}

    void AddMenuItem(ActionID action, const PMString& menuPath, double position,
                     const MenuItemFlags&) override
    {
        mHost.Note();
        mHost.menuItems.emplace(action, QStringLiteral("%1|%2").arg(menuPath.GetString()).arg(position));
    }
};

class FakeActionManager : public FakeObject<IActionManager>
{
public:
    explicit FakeActionManager(FakeHost& host) : FakeObject(host, "IActionManager") {}

    bool IsActionKnown(ActionID action) const override
    {
        return mHost.Give(mHost.actions.count(action) != 0);
    }

    void AddAction(ClassID owner, ActionID action, const PMString& name, const PMString& area,
                   const ActionFlags& flags) override
    {
        mHost.Note();
        QStringList values = {name.GetString(), area.GetString()};
        for (const int value : {owner, flags.type, flags.enabling, flags.selection, flags.shortcutEditor})
            values.append(QString::number(value));
        mHost.actions.emplace(action, values.join(QLatin1Char('|')));
    }

    HostPtr<IMenuManager> QueryMenuManager() const override
    {
        return HandOut<FakeMenuManager>(mHost, HostOperation::QueryMenuManager);
    }
};

class FakeApplication : public FakeObject<IApplication>
{
public:
    explicit FakeApplication(FakeHost& host) : FakeObject(host, "IApplication") {}

    HostPtr<IActionManager> QueryActionManager() const override
    {
        return HandOut<FakeActionManager>(mHost, HostOperation::QueryActionManager);
    }
};

class FakeSession : public FakeObject<ISession>
{
public:
    explicit FakeSession(FakeHost& host) : FakeObject(host, "ISession") {}

    HostPtr<IApplication> QueryApplication() const override
    {
        return HandOut<FakeApplication>(mHost, HostOperation::QueryApplication);
    }

    HostPtr<IBookManager> QueryBookManager() const override
    {
        return HandOut<FakeBookManager>(mHost, HostOperation::QueryBookManager);
    }
};

class FakeUnits : public FakeObject<IUnitOfMeasureSettings>
{
public:
    explicit FakeUnits(FakeHost& host) : FakeObject(host, "IUnitOfMeasureSettings") {}
    ClassID GetHorizontalUnit() const override { return mHost.Give(mHost.unit); }
};

class FakeModalUtils : public FakeObject<IModalUtils>
{
public:
    explicit FakeModalUtils(FakeHost& host) : FakeObject(host, "IModalUtils") {}

    ModalToken AcquireModalToken() override
    {
        if (mHost.Ask(HostOperation::AcquireModalToken) != HostAnswer::Works)
            return cNoModalToken;
        static ModalToken lastToken = 0;
        mHost.modalTokens.push_back(++lastToken);
        return lastToken;
    }

    void HandBackModalToken(ModalToken token) override
    {
        mHost.Note();
        auto& tokens = mHost.modalTokens;
        tokens.erase(std::remove(tokens.begin(), tokens.end(), token), tokens.end());
    }
};
}  // namespace

FakeHost::FakeHost()
{
    HostServices::Set(this);
}

FakeHost::~FakeHost()
{
    HostServices::Set(nullptr);
}

void FakeHost::Make(HostOperation operation, HostAnswer answer, int fromCall)
{
    mOrders[operation] = {answer, fromCall};
}

void FakeHost::DisturbCall(int number, HostAnswer answer)
{
    mCallsLeft = number == 0 ? std::numeric_limits<int>::max() : number;
    mDisturbance = answer;
}

HostAnswer FakeHost::Note(bool canFail)
{
    const bool isNone = mCallsLeft == std::numeric_limits<int>::max();
    if (isNone || (mDisturbance == HostAnswer::Fails && !canFail) || --mCallsLeft != 0)
        return HostAnswer::Works;
    return Answer(mDisturbance);
}

HostAnswer FakeHost::Answer(HostAnswer answer)
{
    if (answer == HostAnswer::Raises)
        throw std::runtime_error("Raised by the host");
    if (answer == HostAnswer::RaisesNumber)
        throw 4711;
    return answer;
}

int32_t FakeHost::Give(int32_t number)
{
    return Note() == HostAnswer::Nonsense ? nonsense : number;
}

bool FakeHost::Give(bool flag)
{
    return Note() == HostAnswer::Nonsense ? !flag : flag;
}

PMString FakeHost::Give(const QString& text)
{
    QString garbage(70000, QChar(0xD800));
    garbage.replace(0, 4, QStringLiteral("/../"));
    garbage[5] = QChar(0);
    return PMString::Untranslated(Note() == HostAnswer::Nonsense ? garbage : text);
}

ErrorCode FakeHost::AskForCode(HostOperation operation)
{
    const HostAnswer answer = Ask(operation);
    if (answer == HostAnswer::Nonsense)
        return std::numeric_limits<ErrorCode>::min();
    return answer == HostAnswer::Works ? cSuccess : cFailure;
}

HostAnswer FakeHost::Ask(HostOperation operation)
{
    mAsked.push_back(operation);
    if (onAsk)
        onAsk(operation);
    if (const HostAnswer disturbed = Note(true); disturbed != HostAnswer::Works)
        return disturbed;
    const auto order = mOrders.find(operation);
    const auto calls = std::count(mAsked.begin(), mAsked.end(), operation);
    const bool isOrdered = order != mOrders.end() && calls >= order->second.fromCall;
    return isOrdered ? Answer(order->second.answer) : HostAnswer::Works;
}

void FakeHost::SetCancelObserver(ICancelObserver* observer)
{
    mCancelObserver = observer;
    Note();
}

void FakeHost::CancelByUser()
{
    if (mCancelObserver != nullptr)
        mCancelObserver->OnCommandCancelled();
}

HostPtr<ISession> FakeHost::QuerySession()
{
    return HandOut<FakeSession>(*this, HostOperation::QuerySession);
}

HostPtr<IUnitOfMeasureSettings> FakeHost::QueryUnitPreferences(IActiveContext*)
{
    return HandOut<FakeUnits>(*this, HostOperation::QueryUnitPreferences);
}

HostPtr<ILayoutUtils> FakeHost::QueryLayoutUtils()
{
    return HandOut<FakeLayoutUtils>(*this, HostOperation::QueryLayoutUtils);
}

HostPtr<IDocumentUtils> FakeHost::QueryDocumentUtils()
{
    return HandOut<FakeDocumentUtils>(*this, HostOperation::QueryDocumentUtils);
}

HostPtr<IModalUtils> FakeHost::QueryModalUtils()
{
    return HandOut<FakeModalUtils>(*this, HostOperation::QueryModalUtils);
}

HostPtr<ICommand> FakeHost::CreateCommand(ClassID command)
{
    switch (command) {
        case HostClassID::cPDFExportCommand:
            return HandOut<FakeCommand>(*this, HostOperation::CreatePDFExportCommand, command);
        case HostClassID::cPDFPreferencesCommand:
            return HandOut<FakeCommand>(*this, HostOperation::CreatePDFPreferencesCommand, command);
        case HostClassID::cBookExportCommand:
            return HandOut<FakeCommand>(*this, HostOperation::CreateBookExportCommand, command);
        default:
            return {};
    }
}

ErrorCode FakeHost::ProcessCommand(ICommand& command)
{
    return static_cast<FakeCommand&>(command).Run();
}

HostPtr<IObjectModel> FakeHost::QueryObjectModel()
{
    return HandOut<FakeObjectModel>(*this, HostOperation::QueryObjectModel);
}

int32_t FakeHost::ModalAlert(const PMString& text, const PMString& button1, const PMString& button2,
                             const PMString& button3, int32_t, int32_t)
{
    if (const ErrorCode fault = AskForCode(HostOperation::ModalAlert); fault != cSuccess)
        return fault == cFailure ? 0 : fault;
    QStringList alert = {text.GetString()};
    for (const PMString* button : {&button1, &button2, &button3})
        if (!button->IsEmpty())
            alert.append(button->GetString());
    alerts.append(alert.join(QLatin1Char('|')));
    return 1;
}
