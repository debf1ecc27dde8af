#pragma once

#include "hosts/indesign/bridge/ApplicationWindow.h"
#include "hosts/indesign/bridge/BridgeModule.h"
#include "hosts/indesign/bridge/BridgeTalk.h"
#include "hosts/indesign/bridge/MeetingPlace.h"
#include "hosts/indesign/bridge/ScriptHost.h"

// The helper's life: takes the meeting place, loads the plug-in, serves one script, and ends when the script
// goes or none comes. Needs a QApplication that outlives its last window. For the main thread.
class BridgeProgram
{
public:
    BridgeProgram();

    // Gives the exit status: 0 at the end of a life, and when another helper is there already. Raises what
    // MeetingPlace raises.
    int Run();

private:
    BridgeTalk::Calls MakeCalls();
    QJsonObject Welcome();
    void Choose(int32_t action);
    void End();

    MeetingPlace mPlace;
    ApplicationWindow mWindow;
    BridgeTalk mTalk;
    BridgeTalk* mHostTalk = nullptr;  // what the host may ask; null while nobody waits for its questions
    ScriptHost mHost;
    BridgeModule mModule;
    QString mError;  // why the plug-in can't be used
    bool mIsChosen = false;
    bool mIsEnding = false;
    QTimer mLoneliness;
    QTimer mClosing;
};
