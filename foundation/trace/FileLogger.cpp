#include "foundation/trace/FileLogger.h"

#include <QCoreApplication>
#include <QDateTime>

#include <atomic>
#include <cstdio>
#include <exception>

namespace
{
constexpr qint64 cLargestSize = qint64(8) << 20;

// Threads are numbered in the order in which they first log: short, and the same on every system.
int GetThreadNumber()
{
    static std::atomic<int> last{0};
    thread_local const int number = ++last;
    return number;
}

QByteArray GetLevelText(Morvane::LogLevel level)
{
    switch (level) {
        case Morvane::LogLevel::Debug:
            return "DEBUG";
        case Morvane::LogLevel::Error:
            return "ERROR";
        case Morvane::LogLevel::Assert:
            break;
    }
    return "ASSERT";
}

void AppendEscaped(QByteArray& line, const QString& text)
{
    for (const char character : text.toUtf8()) {
        switch (character) {
            case '\\':
                line += "\\\\";
                break;
            case '\n':
                line += "\\n";
                break;
            case '\r':
                line += "\\r";
                break;
            case '\t':
                line += "\\t";
                break;
            default:
                if (static_cast<unsigned char>(character) < 0x20 || character == 0x7F)
                    line += "\\x" + QByteArray(1, character).toHex();
                else
                    line += character;
        }
    }
}

QByteArray MakeLine(Morvane::LogLevel level, const QString& source, const QString& message)
{
    QByteArray line = QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs).toLatin1();
    line += ' ' + QByteArray::number(QCoreApplication::applicationPid()) + '/' +
            QByteArray::number(GetThreadNumber()) + ' ' + GetLevelText(level) + ' ';
    AppendEscaped(line, source);
    line += ": ";
    AppendEscaped(line, message);
    line += '\n';
    return line;
}

void SetAsideWhenLarge(const QString& path)
{
    if (QFile(path).size() <= cLargestSize)
        return;
    // Where another process has the file open on Windows this fails, and the file grows on until the next
    // time.
    const QString aside = path + QStringLiteral(".old");
    QFile::remove(aside);
    QFile::rename(path, aside);
}
}  // namespace

Morvane::FileLogger::FileLogger(const QString& path) : mFile(path)
{
    SetAsideWhenLarge(path);
    if (mFile.open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered))
        mFile.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
}

void Morvane::FileLogger::log(LogLevel level, const QString& source, const QString& message) noexcept
{
    try {
        const QByteArray line = MakeLine(level, source, message);
        const std::lock_guard<std::mutex> guard(mMutex);
        if (mFile.isOpen())
            mFile.write(line);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "morvane: a log line was lost: %s\n", error.what());
    }
}
