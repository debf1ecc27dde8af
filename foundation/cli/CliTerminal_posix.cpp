#include "foundation/cli/CliTerminal.h"

#include <QFile>

#include <memory>
#include <optional>

#include <termios.h>
#include <unistd.h>

namespace
{
struct CloseFile
{
    void operator()(std::FILE* file) const { std::fclose(file); }
};

// Keeps what is typed off the screen for as long as this lives.
class Silence
{
public:
    explicit Silence(int terminal) : mTerminal(terminal), mIsSet(tcgetattr(terminal, &mBefore) == 0)
    {
        termios silent = mBefore;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        mIsSet = mIsSet && tcsetattr(terminal, TCSAFLUSH, &silent) == 0;
    }
    ~Silence()
    {
        if (mIsSet)
            tcsetattr(mTerminal, TCSAFLUSH, &mBefore);
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

private:
    int mTerminal;
    termios mBefore = {};
    bool mIsSet;
};

bool ReadFrom(std::FILE* terminal, QString& line)
{
    QByteArray bytes;
    int next = std::fgetc(terminal);
    if (next == EOF)
        return false;
    for (; next != EOF && next != '\n'; next = std::fgetc(terminal))
        bytes += static_cast<char>(next);
    line = QFile::decodeName(bytes);
    return true;
}
}  // namespace

bool CliTerminal::IsTerminal(std::FILE* stream)
{
    return isatty(fileno(stream)) == 1;
}

bool CliTerminal::Write(std::FILE* stream, const QByteArray& text)
{
    const auto size = static_cast<size_t>(text.size());
    return std::fwrite(text.constData(), 1, size, stream) == size;
}

bool CliTerminal::ReadLine(const QByteArray& question, bool isShown, QString& line)
{
    const std::unique_ptr<std::FILE, CloseFile> terminal(std::fopen("/dev/tty", "r+"));
    if (terminal == nullptr)
        return false;
    std::setvbuf(terminal.get(), nullptr, _IONBF, 0);
    // Before the question: what is typed as soon as that is there must not be lost, or shown.
    std::optional<Silence> silence;
    if (!isShown)
        silence.emplace(fileno(terminal.get()));
    std::fputs(question.constData(), terminal.get());
    if (isShown)
        return ReadFrom(terminal.get(), line);
    const bool isRead = ReadFrom(terminal.get(), line);
    std::fputc('\n', terminal.get());
    return isRead;
}

bool CliTerminal::GetWords(int argc, char** argv, QStringList& words, QString& wrong)
{
    for (int at = 1; at < argc; ++at) {
        const QByteArray bytes = argv[at];
        words.append(QFile::decodeName(bytes));
        if (QFile::encodeName(words.last()) == bytes)
            continue;
        wrong = words.last();
        return false;
    }
    return true;
}
