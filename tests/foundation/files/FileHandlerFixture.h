#pragma once

#include "foundation/files/FileHandler.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Test.h"

#include <QRegularExpression>

#include <functional>

using Texts = std::pair<const char*, const char*>;

// A handler that counts the failed attempts and lets a test do something after a certain one.
class WatchedHandler : public Morvane::FileHandler
{
public:
    void LogDebug(const QString&, const QString& message) const override { NoteAttempt(message); }
    void LogError(const QString& source, const QString& message) const override
    {
        NoteAttempt(message);
        FileHandler::LogError(source, message);
    }
    bool checkSameVolume(const QString& one, const QString& other) override
    {
        return isOneVolume && FileHandler::checkSameVolume(one, other);
    }
    // A file of the name "stuck" can neither be removed nor copied.
    bool removeFile(const QString& path) override
    {
        return !path.endsWith(QLatin1String("/stuck")) && FileHandler::removeFile(path);
    }
    bool copyFile(const QString& source, const QString& destination) override
    {
        return !source.endsWith(QLatin1String("/stuck")) && FileHandler::copyFile(source, destination);
    }

    // Nor can its companion be renamed.
    bool LockFolder(const QString& path) override
    {
        return !path.endsWith(QLatin1String("/._stuck")) && FileHandler::LockFolder(path);
    }

    void NoteAttempt(const QString& message) const
    {
        if (message.contains(QLatin1String("Attempt number"))) {
            ++attempts;
            if (afterAttempt)
                afterAttempt(attempts);
        }
    }

    mutable int attempts = 0;
    std::function<void(int)> afterAttempt;
    bool isOneVolume = true;
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

    // Makes a file with the content, its own name if none is given, and the folders above it.
    QString Make(const QByteArray& relative, const QByteArray& content = QByteArray()) const
    {
        const QString path = At(relative.constData());
        EXPECT_TRUE(WriteFile(path, content.isNull() ? relative : content)) << relative.constData();
        return path;
    }

    // Makes files with their names as content, and folders where a name ends with a slash: "a/b c/".
    void MakeAll(const char* relatives) const
    {
        for (const QByteArray& relative : QByteArray(relatives).split(' ')) {
            if (relative.endsWith('/'))
                QDir().mkpath(At(relative.constData()));
            else if (!relative.isEmpty())
                Make(relative);
        }
    }

    // Everything below the sandbox, hidden entries too, as one sorted text: "a/b c/"; with a file's content
    // where that is not its own name: "copy=original".
    std::string Tree() const
    {
        const QMap<QString, QByteArray> tree = ReadTree(mSandbox.GetPath());
        QStringList entries;
        for (auto entry = tree.begin(); entry != tree.end(); ++entry) {
            const auto next = std::next(entry);
            const bool isFolder = entry.key().endsWith(QLatin1Char('/'));
            if (!isFolder && entry.value() != entry.key().toUtf8())
                entries += entry.key() + QLatin1Char('=') + QString::fromUtf8(entry.value());
            else if (!isFolder || next == tree.end() || !next.key().startsWith(entry.key()))
                entries += entry.key();
        }
        return WithoutRandom(entries.join(QLatin1Char(' ')));
    }

    // The error lines since the last call, each as "operation|message", with paths relative to the sandbox,
    // without the system's reasons and the lines of attempts.
    std::string Errors()
    {
        return WithoutRandom(mLog.TakeErrors()
                                 .join(QLatin1Char('\n'))
                                 .remove(QRegularExpression(" \\([^()\n]*\\)(?=\n|$)"_q))
                                 .remove(QRegularExpression("[^\n]*Will try again[^\n]*(\n|$)"_q))
                                 .remove(mSandbox.GetPath() + QLatin1Char('/'))
                                 .remove(QLatin1String("FileHandler::")));
    }

    // The text with "#####" for the random part of each name that was made.
    static std::string WithoutRandom(QString text)
    {
        return text.replace(QRegularExpression("_[0-9a-f]{5}\\b"_q), "_#####"_q).toStdString();
    }

    Sandbox mSandbox;
    LogRecorder mLog;
    WatchedHandler mHandler;
};
