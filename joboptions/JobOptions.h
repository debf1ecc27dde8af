#pragma once

#include "foundation/core/GResult.h"
#include "joboptions/PostScriptValue.h"

// A job options file: the settings of a PDF export, as a PostScript program that only contains data,
//
//     << /CompatibilityLevel 1.4 /ColorImageResolution 300 … >> setdistillerparams
//     << /HWResolution [2400 2400] >> setpagedevice
class JobOptions
{
public:
    // Files larger than this are refused.
    static constexpr qint64 cMostBytes = 4 * 1024 * 1024;

    // Reads a file's content. Fails when it is not a job options file; the reason says what is wrong, and
    // where.
    GResult Parse(const QByteArray& text);

    // The same for a file.
    GResult Read(const QString& path);

    // The value of a setting of the distiller's parameters, or of the page device; null if the file does not
    // have it. If a setting appears in several dictionaries of a kind, the last one wins.
    const PostScriptValue* FindParameter(const char* key) const { return Find(mParameters, key); }
    const PostScriptValue* FindDeviceSetting(const char* key) const { return Find(mDeviceSettings, key); }

    // The same for settings that a layout application adds, in the dictionaries of the parameter
    // "OtherNamespaces".
    const PostScriptValue* FindLayoutSetting(const char* key) const;

    // All dictionaries of a kind, in the file's order.
    const std::vector<PostScriptValue>& GetParameters() const { return mParameters; }
    const std::vector<PostScriptValue>& GetDeviceSettings() const { return mDeviceSettings; }

private:
    static const PostScriptValue* Find(const std::vector<PostScriptValue>& dictionaries, const char* key);
    GResult Execute(const QByteArray& name, std::vector<PostScriptValue>& operands);

    std::vector<PostScriptValue> mParameters;
    std::vector<PostScriptValue> mDeviceSettings;
};
