#pragma once

#include "plugin/host/IHostServices.h"
#include "tests/support/fake_host/FakeRecords.h"
#include "tests/support/fake_host/HostOperation.h"

#include <functional>
#include <limits>
#include <memory>

// A host for tests: documents, books, commands and menus that are plain values.
//
// Every query and command works unless the test makes it absent or failing. The host keeps the order in which
// it was asked and what it was told, counts the references that were not given back, writes something like
// a PDF when its PDF command runs and a folder when its package command does. While it lives it is the host
// of the fronts in HostCalls.h.
class FakeHost final : public IHostServices
{
public:
    FakeHost();
    ~FakeHost();
    FakeHost(const FakeHost&) = delete;
    FakeHost& operator=(const FakeHost&) = delete;

    // What the host holds. The first open document is the front one, the first book the active one.
    std::vector<FakeDocument> documents;
    std::vector<FakeBook> books;
    ClassID unit = HostUnitID::cPoints;
    int32_t version = cVersion;
    int32_t nonsense = std::numeric_limits<int32_t>::max();  // for a count that can't be

    // What it was told.
    std::vector<std::shared_ptr<FakeCommandRecord>> commands;
    std::vector<std::shared_ptr<FakePackageRecord>> packages;
    std::multimap<ActionID, QString> actions;    // "name|area|owner|" and the four flags
    std::multimap<ActionID, QString> menuItems;  // "path|position"
    QStringList alerts;                          // the texts, with the buttons behind them, joined by '|'
    std::vector<ModalToken> modalTokens;         // handed out and not handed back

    // Runs inside each command, before it has done anything.
    std::function<void()> onRun;

    // Runs when a command has made a PDF or a package, before it reports success; for a host that lies.
    std::function<void(const QString& path)> onMade;

    // Runs when an operation is asked for, before it answers.
    std::function<void(HostOperation)> onAsk;

    // From the call of that number on, counted from 1, the operation answers like this.
    void Make(HostOperation operation, HostAnswer answer, int fromCall = 1);

    // The call of that number from now on, counted from 1 over all operations that can answer so, answers
    // like this, once. 0 for no call.
    void DisturbCall(int number, HostAnswer answer);

    // Whether the call has been reached.
    bool IsDisturbed() const { return mCallsLeft <= 0; }

    // The operations that can find nothing or fail, in the order in which they were asked for.
    const std::vector<HostOperation>& GetAsked() const { return mAsked; }

    // The user presses Cancel while a command runs; for use in onRun.
    void CancelByUser();

    // The objects with references that were not given back, by name, one name a reference.
    QStringList GetUnreleased() const { return mUnreleased; }

    int32_t GetVersion() const override { return version; }  // not a call that can be disturbed
    HostPtr<ISession> QuerySession() override;
    HostPtr<IUnitOfMeasureSettings> QueryUnitPreferences(IActiveContext* context) override;
    HostPtr<ILayoutUtils> QueryLayoutUtils() override;
    HostPtr<IDocumentUtils> QueryDocumentUtils() override;
    HostPtr<IModalUtils> QueryModalUtils() override;
    HostPtr<ICommand> CreateCommand(ClassID command) override;
    ErrorCode ProcessCommand(ICommand& command) override;
    void SetCancelObserver(ICancelObserver* observer) override;
    HostPtr<IObjectModel> QueryObjectModel() override;
    int32_t ModalAlert(const PMString& text, const PMString& button1, const PMString& button2,
                       const PMString& button3, int32_t defaultButton, int32_t cancelButton) override;

    // For the host's own objects: one call of an operation, and what it gives then. Those without an
    // operation are for the operations that can neither find nothing nor fail.
    HostAnswer Ask(HostOperation operation);
    ErrorCode AskForCode(HostOperation operation);
    HostAnswer Note(bool canFail = false);
    int32_t Give(int32_t number);
    bool Give(bool flag);
    PMString Give(const QString& text);
    void NoteReference(const QString& name) { mUnreleased.append(name); }
    void NoteRelease(const QString& name) { mUnreleased.removeOne(name); }

private:
    // The answer itself, unless it is one that raises.
    static HostAnswer Answer(HostAnswer answer);

    struct Order
    {
        HostAnswer answer;
        int fromCall;
    };

    std::map<HostOperation, Order> mOrders;
    std::vector<HostOperation> mAsked;
    QStringList mUnreleased;
    ICancelObserver* mCancelObserver = nullptr;
    int mCallsLeft = std::numeric_limits<int>::max();
    HostAnswer mDisturbance = HostAnswer::Works;
};
