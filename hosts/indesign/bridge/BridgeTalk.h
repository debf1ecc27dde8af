#pragma once

#include "hosts/indesign/bridge/LoopbackSocket.h"

#include <QEventLoop>
#include <QJsonObject>
#include <QSocketNotifier>
#include <QTimer>

#include <functional>
#include <list>
#include <memory>

// The helper's end of the talk with the script, as docs/formats/bridge.md tells it: the script says a line
// and gets one back, so that it never has to wait for what it does not know to come. A request of the
// helper's own goes out as the answer to such a line.
//
// For the main thread; needs a QCoreApplication. Times are milliseconds.
class BridgeTalk
{
public:
    struct Limits
    {
        int hello = 5000;            // for the first line of a connection
        int answer = 60000;          // for one answer of the script
        int work = 6 * 3600 * 1000;  // for one that comes after an export or a package
    };

    // What the script's calls lead to. All but `ended` come from the event loop while nothing of the script
    // is waited for; they may Ask().
    struct Calls
    {
        std::function<QJsonObject()> welcome;
        std::function<QJsonObject(int32_t action)> getState;
        std::function<void(int32_t action)> choose;  // returns when the action is over
        std::function<void()> ended;                 // the script has gone; once
    };

    // An answer of the script: a number of hopbox_result and what belongs to it.
    struct Answer
    {
        int32_t result;
        QJsonValue value;
    };

    static constexpr int cVersion = 1;
    static constexpr int cLongestLine = 4 * 1024 * 1024;

    BridgeTalk(QByteArray secret, const Limits& limits, Calls calls);
    ~BridgeTalk();
    BridgeTalk(const BridgeTalk&) = delete;
    BridgeTalk& operator=(const BridgeTalk&) = delete;

    // Listens, and gives the port; 0 when that fails. Once.
    uint16_t Listen();

    // Has the script do an operation and waits for its answer. Handles events meanwhile, all but the user's:
    // windows are painted, and what is clicked is heard afterwards. HOPBOX_FAILED when the script is not
    // there, is late or talks nonsense.
    Answer Ask(const char* operation, QJsonObject arguments, bool isWork = false);

    // The port of the script's end; 0 without a script.
    uint16_t GetScriptPort() const;

private:
    // A connection that has not said yet who it is, or the script's.
    struct Connection
    {
        LoopbackSocket socket;
        QByteArray bytes;
        std::unique_ptr<QSocketNotifier> notifier;
        QTimer patience;
    };

    struct Request
    {
        QJsonObject line;
        int number;
        bool isSent;
        QEventLoop* loop;
        Answer answer;
    };

    void TakeConnection();
    void TakeBytes(Connection* connection);
    void TakeHello(Connection* connection, const QByteArray& line);
    void TakeLine(const QByteArray& line);
    void EndRequest(const QJsonObject& line);
    void TakeState(int32_t action);
    void TakeChoice(int32_t action);
    void RunChoice(int32_t action);
    void Complete(const Answer& answer);
    void GoOn();
    void Reply(const QJsonObject& line);
    void Drop(Connection* connection);

    const QByteArray mSecret;
    const Limits mLimits;
    const Calls mCalls;
    LoopbackSocket mListener;
    std::unique_ptr<QSocketNotifier> mListenerNotifier;
    std::list<Connection> mConnections;
    Connection* mScript = nullptr;
    bool mScriptWaits = false;  // it has said a line that has no reply yet
    Request* mRequest = nullptr;
    int mLastNumber = 0;
    int mRunning = 0;  // choices and states that are being worked on
    QTimer mHold;
};
