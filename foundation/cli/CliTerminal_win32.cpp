#include "foundation/cli/CliTerminal.h"

#include <QCoreApplication>

#include <memory>

#include <io.h>
#include <windows.h>

namespace
{
struct CloseHandleOf
{
    void operator()(HANDLE handle) const { CloseHandle(handle); }
};
using Handle = std::unique_ptr<void, CloseHandleOf>;

HANDLE GetHandle(std::FILE* stream)
{
    return reinterpret_cast<HANDLE>(_get_osfhandle(_fileno(stream)));
}

bool IsConsole(HANDLE handle)
{
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != 0;
}

Handle OpenConsole(const wchar_t* name)
{
    const HANDLE handle = CreateFileW(name, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                      nullptr, OPEN_EXISTING, 0, nullptr);
    return Handle(handle == INVALID_HANDLE_VALUE ? nullptr : handle);
}

bool WriteToConsole(HANDLE console, const QString& text)
{
    constexpr int cMost = 8192;  // that every Windows takes at once
    for (int at = 0; at < text.size(); at += cMost) {
        const QString part = text.mid(at, cMost);
        DWORD written = 0;
        if (!WriteConsoleW(console, part.utf16(), static_cast<DWORD>(part.size()), &written, nullptr))
            return false;
    }
    return true;
}
}  // namespace

bool CliTerminal::IsTerminal(std::FILE* stream)
{
    return IsConsole(GetHandle(stream));
}

// A console shows bytes in a code page of its own, text as it is.
bool CliTerminal::Write(std::FILE* stream, const QByteArray& text)
{
    if (!IsTerminal(stream)) {
        const auto size = static_cast<size_t>(text.size());
        return std::fwrite(text.constData(), 1, size, stream) == size;
    }
    std::fflush(stream);
    return WriteToConsole(GetHandle(stream), QString::fromUtf8(text));
}

bool CliTerminal::ReadLine(const QByteArray& question, bool isShown, QString& line)
{
    const Handle input = OpenConsole(L"CONIN$");
    const Handle output = OpenConsole(L"CONOUT$");
    DWORD mode = 0;
    if (!input || !output || !GetConsoleMode(input.get(), &mode) ||
        !WriteToConsole(output.get(), QString::fromUtf8(question)))
        return false;
    const DWORD shownMode = ENABLE_LINE_INPUT | ENABLE_PROCESSED_INPUT | ENABLE_ECHO_INPUT;
    const DWORD silentMode = ENABLE_LINE_INPUT | ENABLE_PROCESSED_INPUT;
    SetConsoleMode(input.get(), isShown ? shownMode : silentMode);
    wchar_t text[1024];
    DWORD count = 0;
    const bool isRead =
        ReadConsoleW(input.get(), text, static_cast<DWORD>(std::size(text)), &count, nullptr) != 0 &&
        count > 0;
    SetConsoleMode(input.get(), mode);
    if (!isShown)
        WriteToConsole(output.get(), QStringLiteral("\r\n"));
    line = QString::fromWCharArray(text, static_cast<int>(count)).remove(QLatin1Char('\r'));
    line.remove(QLatin1Char('\n'));
    return isRead;
}

// The words are text from the beginning here.
bool CliTerminal::GetWords(int, char**, QStringList& words, QString&)
{
    words = QCoreApplication::arguments().mid(1);
    return true;
}
