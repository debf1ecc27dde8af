#pragma once

#include "hosts/indesign/bridge/BridgeTalk.h"
#include "hosts/indesign/bridge/ScriptCommand.h"
#include "plugin/boundary/hopbox_host.h"

#include <QJsonArray>
#include <QVector>

#include <map>

class ApplicationWindow;

// The application as the plug-in's host: each operation of the boundary is asked of the script, and what the
// script gives is looked at before the plug-in gets it. Commands are collected here and told to the script
// when they run. For the main thread.
class ScriptHost
{
public:
    // `talk` and `window` outlive this; the table's functions take this object as their host.
    ScriptHost(BridgeTalk*& talk, ApplicationWindow& window) : mTalk(talk), mWindow(window) {}

    static const hopbox_host_table& GetTable();

    // The actions that the plug-in wants entries for.
    const QVector<int32_t>& GetActions() const { return mActions; }

private:
    friend struct HostFunctions;

    BridgeTalk::Answer Ask(const char* operation, const QJsonObject& arguments, bool isWork = false);

    // Ask for a number, a text, a list of texts.
    int32_t AskForNumber(const char* operation, const QJsonObject& arguments, double least, double most,
                         double& number);
    int32_t AskForText(const char* operation, const QJsonObject& arguments, const hopbox_sink* sink);
    int32_t AskForTexts(const char* operation, const QJsonObject& arguments, const hopbox_sink* sink);
    int32_t Run(ScriptCommand& command);

    BridgeTalk*& mTalk;  // null before there is one, and while no script may be asked
    ApplicationWindow& mWindow;
    QVector<int32_t> mActions;
    std::map<hopbox_handle, ScriptCommand> mCommands;
    hopbox_handle mLastCommand = cFirstCommand;
    QJsonArray mPages;  // of the document that was asked last
    hopbox_handle mPagesOf = 0;
    QJsonArray mBookPreset;  // the settings of the next book

    // Numbers of commands begin where those of the script's objects end.
    static constexpr hopbox_handle cFirstCommand = hopbox_handle{1} << 40;
};
