#pragma once

#include "foundation/files/FileHandler.h"
#include "foundation/files/FileSystem.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Sandbox.h"
#include "tests/support/TestFiles.h"
#include "tests/support/Texts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

#include <functional>
#include <utility>
#include <vector>

using Texts = std::pair<const char*, const char*>;

// A handler that counts the failed attempts and lets a test do something after a certain one.
class WatchedHandler : public Morvane::FileHandler
{
public:
    void LogDebug(const QString& source, const QString& message) const override
    {
        if (message.contains(QLatin1String("Attempt number"))) {
            ++attempts;
            lastAttempt = source + QLatin1Char('|') + message;
            if (afterAttempt)
                afterAttempt(attempts);
        }
    }
    bool checkSameVolume(const QString& one, const QString& other) override
    {
        return isOneVolume && FileHandler::checkSameVolume(one, other);
    }
    bool removeFile(const QString& path) override
    {
        return !(path.endsWith(stuckName) && !stuckName.isEmpty()) && FileHandler::removeFile(path);
    }

    mutable int attempts = 0;
    mutable QString lastAttempt;
    std::function<void(int)> afterAttempt;
    bool isOneVolume = true;
    QString stuckName;
};

class FileHandlerTest : public testing::Test
{
protected:
    FileHandlerTest()
    {
        mHandler.setLogInterface(&mLog);
        mHandler.setRetryPauses({std::chrono::milliseconds(1), std::chrono::milliseconds(1)});
    }

    QString At(const char* relative) const { return mSandbox.GetPath(QString::fromUtf8(relative)); }

    // Makes a file with the content, and the folders above it.
    QString Make(const char* relative, const QByteArray& content = "content") const
    {
        const QString path = At(relative);
        EXPECT_TRUE(WriteFile(path, content)) << relative;
        return path;
    }

    void MakeAll(const std::vector<const char*>& relatives) const
    {
        for (const char* relative : relatives)
            Make(relative);
    }

    // Everything below the sandbox, hidden entries too, as one sorted text: "a b/c".
    std::string Tree() const
    {
        QStringList paths;
        Collect(mSandbox.GetPath(), QString(), &paths);
        paths.sort();
        return paths.join(QLatin1Char(' ')).toStdString();
    }

    // The error lines since the last call, each as "source|message", with paths relative to the sandbox.
    std::string Errors()
    {
        return mLog.TakeErrors()
            .join(QLatin1Char('\n'))
            .remove(mSandbox.GetPath() + QLatin1Char('/'))
            .toStdString();
    }

    Sandbox mSandbox;
    LogRecorder mLog;
    WatchedHandler mHandler;

private:
    static void Collect(const QString& folder, const QString& prefix, QStringList* paths)
    {
        const QDir::Filters all =
            QDir::Files | QDir::AllDirs | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
        for (const QString& name : QDir(folder).entryList(all)) {
            const QString path = QDir(folder).filePath(name);
            const bool isFolder =
                Morvane::FileSystem::getItemKind(path) == Morvane::FileSystem::ItemKind::Folder;
            const int before = paths->size();
            if (isFolder)
                Collect(path, prefix + name + QLatin1Char('/'), paths);
            if (paths->size() == before)
                paths->append(prefix + name + (isFolder ? "/"_q : QString()));
        }
    }
};
