#include "hosts/indesign/bridge/BridgeTalk.h"

#include "plugin/boundary/hopbox_host.h"

#include <QJsonDocument>
#include <QLoggingCategory>

#include <utility>

namespace
{
Q_LOGGING_CATEGORY(cLog, "hopbox.bridge")

// How long a line of the script waits for a request before it is told that there is none: requests often
// follow each other at once, and an idle task of the application comes seldom.
constexpr int cHold = 30;

constexpr size_t cMostConnections = 8;

// Whether two texts are the same, in a time that does not tell where they differ.
bool IsSame(const QByteArray& one, const QByteArray& other)
{
    int difference = one.size() ^ other.size();
    for (int i = 0; i < qMin(one.size(), other.size()); ++i)
        difference |= one[i] ^ other[i];
    return difference == 0;
}

// A line in ASCII, whatever its texts hold: the connection then needs no encoding.
QByteArray MakeLine(const QJsonObject& object)
{
    QByteArray line;
    for (const QChar character : QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact))) {
        if (character.unicode() < 0x80)
            line += static_cast<char>(character.unicode());
        else
            line += "\\u" + QByteArray::number(character.unicode() | 0x10000, 16).right(4);
    }
    return line + '\n';
}

QJsonObject Tell(const char* key, const QJsonValue& value)
{
    return {{QLatin1String(key), value}};
}
}  // namespace

BridgeTalk::BridgeTalk(QByteArray secret, const Limits& limits, Calls calls)
    : mSecret(std::move(secret)), mLimits(limits), mCalls(std::move(calls))
{
    mHold.setSingleShot(true);
    mHold.setInterval(cHold);
    QObject::connect(&mHold, &QTimer::timeout, &mHold, [this] { Reply(Tell("idle", true)); });
}

BridgeTalk::~BridgeTalk() = default;

uint16_t BridgeTalk::Listen()
{
    mListener = LoopbackSocket::Listen();
    if (!mListener.IsOpen())
        return 0;
    mListenerNotifier = std::make_unique<QSocketNotifier>(mListener.Get(), QSocketNotifier::Read);
    QObject::connect(mListenerNotifier.get(), &QSocketNotifier::activated, [this] { TakeConnection(); });
    return mListener.GetPort();
}

uint16_t BridgeTalk::GetScriptPort() const
{
    return mScript == nullptr ? 0 : mScript->socket.GetPeerPort();
}

void BridgeTalk::TakeConnection()
{
    LoopbackSocket socket = mListener.Accept();
    if (!socket.IsOpen() || mConnections.size() >= cMostConnections)
        return;
    mConnections.emplace_back();
    Connection* connection = &mConnections.back();
    connection->socket = std::move(socket);
    connection->notifier = std::make_unique<QSocketNotifier>(connection->socket.Get(), QSocketNotifier::Read);
    QObject::connect(connection->notifier.get(), &QSocketNotifier::activated,
                     [this, connection] { TakeBytes(connection); });
    QObject::connect(&connection->patience, &QTimer::timeout, [this, connection] { Drop(connection); });
    connection->patience.start(mLimits.hello);
}

// Whoever is no script yet has one line, and a short one; the script has one line at a time.
void BridgeTalk::TakeBytes(Connection* connection)
{
    constexpr int cLongestHello = 4096;
    const bool isThere = connection->socket.Read(connection->bytes);
    const int end = connection->bytes.indexOf('\n');
    const int longest = connection == mScript ? cLongestLine : cLongestHello;
    if (!isThere || connection->bytes.size() > longest) {
        Drop(connection);
        return;
    }
    if (end < 0)
        return;
    const QByteArray line = connection->bytes.left(end);
    const bool isMore = end + 1 < connection->bytes.size();
    connection->bytes.clear();
    if (isMore)
        Drop(connection);
    else if (connection == mScript)
        TakeLine(line);
    else
        TakeHello(connection, line);
}

// Who does not know the secret learns nothing, not even that this is the helper.
void BridgeTalk::TakeHello(Connection* connection, const QByteArray& line)
{
    const QJsonObject hello = QJsonDocument::fromJson(line).object();
    if (!IsSame(hello.value(QLatin1String("secret")).toString().toUtf8(), mSecret)) {
        qCWarning(cLog, "a connection without the secret is closed");
        Drop(connection);
        return;
    }
    const bool isOurs = hello.value(QLatin1String("hello")).toInt() == cVersion;
    if (mScript != nullptr || !isOurs) {
        const char* reason = isOurs ? "another application has the helper" : "another version is spoken here";
        // Whoever does not hear it is closed all the same.
        static_cast<void>(connection->socket.Write(MakeLine(Tell("refused", QLatin1String(reason)))));
        Drop(connection);
        return;
    }
    connection->patience.stop();
    mScript = connection;
    mScriptWaits = true;
    Reply(mCalls.welcome());
}

void BridgeTalk::TakeLine(const QByteArray& bytes)
{
    if (mScriptWaits) {
        qCWarning(cLog, "the script does not wait for its answer");
        Drop(mScript);
        return;
    }
    mScriptWaits = true;
    const QJsonObject line = QJsonDocument::fromJson(bytes).object();
    if (line.contains(QLatin1String("answer")) || line.isEmpty())
        EndRequest(line);
    else if (line.contains(QLatin1String("state")) && mRequest == nullptr)
        TakeState(line.value(QLatin1String("state")).toInt());
    else if (line.contains(QLatin1String("choose")))
        TakeChoice(line.value(QLatin1String("choose")).toInt());
    GoOn();
}

// An answer that comes when no request is out is too late; what is no answer to the request that is out is
// taken for one that has failed.
void BridgeTalk::EndRequest(const QJsonObject& line)
{
    if (mRequest == nullptr || !mRequest->isSent)
        return;
    const int number = line.value(QLatin1String("answer")).toInt(-1);
    const QJsonValue result = line.value(QLatin1String("result"));
    if (number != mRequest->number || !result.isDouble()) {
        qCWarning(cLog, "the script's answer is none");
        Complete({HOPBOX_FAILED, {}});
        return;
    }
    if (line.contains(QLatin1String("error")))
        qCWarning(cLog, "%s", qUtf8Printable(line.value(QLatin1String("error")).toString()));
    Complete({result.toInt(HOPBOX_FAILED), line.value(QLatin1String("value"))});
}

void BridgeTalk::TakeState(int32_t action)
{
    ++mRunning;
    const QJsonObject state = mCalls.getState(action);
    --mRunning;
    Reply(Tell("state", state));
}

// The choice is worked on after its reply: its windows are there until the user closes them.
void BridgeTalk::TakeChoice(int32_t action)
{
    ++mRunning;
    Reply(Tell("started", true));
    QTimer::singleShot(0, &mHold, [this, action] { RunChoice(action); });
}

void BridgeTalk::RunChoice(int32_t action)
{
    mCalls.choose(action);
    --mRunning;
    GoOn();
}

void BridgeTalk::Complete(const Answer& answer)
{
    mRequest->answer = answer;
    mRequest->loop->quit();
}

BridgeTalk::Answer BridgeTalk::Ask(const char* operation, QJsonObject arguments, bool isWork)
{
    if (mScript == nullptr || mRequest != nullptr)
        return {HOPBOX_FAILED, {}};
    QEventLoop loop;
    arguments.insert(QLatin1String("request"), ++mLastNumber);
    arguments.insert(QLatin1String("do"), QLatin1String(operation));
    Request request{arguments, mLastNumber, false, &loop, {HOPBOX_FAILED, {}}};
    mRequest = &request;
    QTimer limit;
    QObject::connect(&limit, &QTimer::timeout, &loop, [this, operation] {
        qCWarning(cLog, "the script does not answer \"%s\"", operation);
        Complete({HOPBOX_FAILED, {}});
    });
    limit.start(isWork ? mLimits.work : mLimits.answer);
    GoOn();
    if (mScript != nullptr)
        loop.exec(QEventLoop::ExcludeUserInputEvents);
    mRequest = nullptr;
    return request.answer;
}

// Gives a script that waits what there is for it.
void BridgeTalk::GoOn()
{
    if (!mScriptWaits)
        return;
    if (mRequest != nullptr && !mRequest->isSent) {
        mRequest->isSent = true;
        Reply(mRequest->line);
    } else if (mRunning == 0) {
        Reply(Tell("finished", true));
    } else {
        mHold.start();
    }
}

void BridgeTalk::Reply(const QJsonObject& line)
{
    mHold.stop();
    if (mScript == nullptr || !mScriptWaits)
        return;
    mScriptWaits = false;
    if (!mScript->socket.Write(MakeLine(line)))
        Drop(mScript);
}

void BridgeTalk::Drop(Connection* connection)
{
    if (!connection->socket.IsOpen())
        return;
    connection->notifier->setEnabled(false);
    connection->socket.Close();
    const bool isScript = connection == mScript;
    // Later, for this may be called by the connection's own notifier or timer.
    connection->patience.stop();
    QTimer::singleShot(0, &mHold, [this, connection] {
        mConnections.remove_if([connection](const Connection& one) { return &one == connection; });
    });
    if (!isScript)
        return;
    mScript = nullptr;
    mScriptWaits = false;
    if (mRequest != nullptr)
        Complete({HOPBOX_FAILED, {}});
    mCalls.ended();
}
