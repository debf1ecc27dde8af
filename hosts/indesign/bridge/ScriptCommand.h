#pragma once

#include "hosts/indesign/bridge/PresetSettings.h"
#include "plugin/boundary/hopbox_host.h"

#include <QJsonArray>
#include <QString>

// A command of the plug-in's, with what it was told until it runs.
struct ScriptCommand
{
    int32_t kind = 0;
    PresetSettings preset;
    QString output;
    QString name;
    QJsonArray pages;
    hopbox_handle source = 0;  // the document or book
    bool packageSettings[HOPBOX_PACKAGE_SETTINGS] = {};
};
