#pragma once

#include "CommandFixture.h"

// The sandbox has job options to make Hopboxes with.
class HopboxCommands : public CommandTest
{
protected:
    HopboxCommands() { WriteFile(GetPath("a.joboptions"), "<< /A 1 >> setdistillerparams"); }

    using CommandTest::Run;
    int Run(const QByteArray& arguments) { return Run(arguments.constData()); }

    // The arguments stand in a text with '|' between them.
    int Run(const char* arguments) { return Run(QString::fromUtf8(arguments).split(QLatin1Char('|'))); }

    QJsonObject GetObject() const { return GetResult().toObject(); }
    QJsonArray GetArray() const { return GetResult().toArray(); }
    QString GetText(const char* key) const { return GetObject().value(QLatin1String(key)).toString(); }

    QString GetAppData(const char* relative) const { return GetPath("AppData/") + QLatin1String(relative); }

    // Everything in the sandbox but the registry, which the first look at it makes.
    QStringList ListFiles() const
    {
        QStringList files;
        for (const QString& name : ReadTree(mSandbox.GetPath()).keys()) {
            if (!name.contains("Morvane Prefs Folder"_q))
                files.append(name);
        }
        return files;
    }
};
