#include "hosts/indesign/bridge/BridgeModule.h"

#include "plugin/boundary/BoundaryText.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

using Table = hopbox_plugin_table;

namespace
{
void KeepText(void* context, const char* bytes, size_t length)
{
    *static_cast<QString*>(context) = QString::fromUtf8(bytes, static_cast<int>(length));
}
}  // namespace

BridgeModule::~BridgeModule()
{
    if (!mIsLoaded)
        return;
    Call(&Table::shutdown);
    Call(&Table::unload);
}

QString BridgeModule::FindFile()
{
    const QString named = qEnvironmentVariable("HOPBOX_PLUGIN");
    if (!named.isEmpty())
        return named;
    const QDir program(QCoreApplication::applicationDirPath());
    const QString cPlaces[] = {QStringLiteral("HopboxPlugIn.dll"), QStringLiteral("HopboxPlugIn.so"),
                               QStringLiteral("../plugin/HopboxPlugIn.dll"),
                               QStringLiteral("../plugin/HopboxPlugIn.so")};
    for (const QString& place : cPlaces) {
        const QString file = QDir::cleanPath(program.filePath(place));
        if (QFileInfo::exists(file))
            return file;
    }
    return program.filePath(cPlaces[0]);
}

GResult BridgeModule::Load(const QString& file, const hopbox_host_table& table, void* host)
{
    mLibrary.setFileName(file);
    mLibrary.setLoadHints(QLibrary::PreventUnloadHint);
    const auto entry = reinterpret_cast<hopbox_entry_function>(mLibrary.resolve(HOPBOX_ENTRY_NAME));
    if (entry == nullptr || !Boundary::Copy(entry(HOPBOX_VERSION), mTable)) {
        const bool isOther = mLibrary.isLoaded();
        return GResult::Failure(isOther ? QStringLiteral("it is of another version")
                                        : mLibrary.errorString());
    }
    QString reason = QStringLiteral("it gives no reason");
    const hopbox_sink sink{&reason, KeepText};
    if (Call(&Table::load, &table, host, &sink) != HOPBOX_OK)
        return GResult::Failure(reason);
    mIsLoaded = Call(&Table::open_actions, &sink) == HOPBOX_OK;
    Call(mIsLoaded ? &Table::startup : &Table::unload);
    return mIsLoaded ? GResult::Success() : GResult::Failure(reason);
}

QJsonObject BridgeModule::GetState(int32_t action) const
{
    int32_t isOn = 0;
    QString name;
    const hopbox_sink nameSink{&name, KeepText};
    const hopbox_sink* const noSink = nullptr;
    if (Call(&Table::get_action_state, action, &isOn, &nameSink, noSink) != HOPBOX_OK)
        return {};
    return {{QStringLiteral("enabled"), isOn != 0}, {QStringLiteral("name"), name}};
}
