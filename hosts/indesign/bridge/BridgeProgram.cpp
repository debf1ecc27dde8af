#include "hosts/indesign/bridge/BridgeProgram.h"

#include <QApplication>
#include <QWidget>

namespace
{
constexpr int cPatience = 60000;   // for the script that has started this
constexpr int cClosingPause = 50;  // between two looks for windows, at the end

// HOPBOX_BRIDGE_SECONDS says how long an answer of the script may take.
BridgeTalk::Limits MakeLimits()
{
    BridgeTalk::Limits limits;
    const int seconds = qEnvironmentVariableIntValue("HOPBOX_BRIDGE_SECONDS");
    if (seconds > 0)
        limits.answer = limits.work = seconds * 1000;
    return limits;
}
}  // namespace

BridgeProgram::BridgeProgram()
    : mTalk(mPlace.GetSecret(), MakeLimits(), MakeCalls()), mHost(mHostTalk, mWindow)
{
    mLoneliness.setSingleShot(true);
    QObject::connect(&mLoneliness, &QTimer::timeout, qApp, &QCoreApplication::quit);
    // One window after the other, as each is the modal one: an alert may follow the dialog.
    QObject::connect(&mClosing, &QTimer::timeout, [] {
        if (QWidget* window = QApplication::activeModalWidget())
            window->close();
    });
}

int BridgeProgram::Run()
{
    if (!mPlace.Enter())
        return 0;
    const QString file = BridgeModule::FindFile();
    mError = mModule.Load(file, ScriptHost::GetTable(), &mHost)
                 .Within(QStringLiteral("The plug-in \"%1\" can't be used: ").arg(file), QString())
                 .GetReason();
    const uint16_t port = mTalk.Listen();
    if (port == 0)
        return 1;
    mPlace.Announce(port);
    mLoneliness.start(cPatience);
    return QApplication::exec();
}

BridgeTalk::Calls BridgeProgram::MakeCalls()
{
    BridgeTalk::Calls calls;
    calls.welcome = [this] { return Welcome(); };
    calls.getState = [this](int32_t action) { return mModule.GetState(action); };
    calls.choose = [this](int32_t action) { Choose(action); };
    calls.ended = [this] { End(); };
    return calls;
}

// The names of the entries. The script waits for its welcome and is asked nothing yet.
QJsonObject BridgeProgram::Welcome()
{
    mLoneliness.stop();
    mWindow.Find(mTalk.GetScriptPort());
    if (!mError.isEmpty())
        return {{QStringLiteral("refused"), mError}};
    QJsonObject names;
    for (const int32_t action : mHost.GetActions()) {
        names.insert(QString::number(action), mModule.GetState(action).value(QLatin1String("name")));
    }
    mHostTalk = &mTalk;
    return {{QStringLiteral("welcome"), BridgeTalk::cVersion}, {QStringLiteral("actions"), names}};
}

void BridgeProgram::Choose(int32_t action)
{
    const bool isFirst = !mIsChosen;
    mIsChosen = true;
    mModule.Do(action);
    if (!isFirst)
        return;
    mIsChosen = false;
    if (mIsEnding)
        QCoreApplication::quit();
}

// The application has gone: so do the windows, as if the user had closed each, and then this.
void BridgeProgram::End()
{
    mIsEnding = true;
    if (mIsChosen)
        mClosing.start(cClosingPause);
    else
        QCoreApplication::quit();
}
