#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QThread>

#include <arpa/inet.h>
#include <duktape.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <csignal>
#include <cstdio>
#include <string>

// The engine of the simulated application, and what its script calls `native`.
// usage: indesign_simulation SETTING FILE…  (a JSON text; the script's files, run one after the other)

namespace
{
qint64 helper = 0;
std::string command;

QString GetText(duk_context* engine, int index)
{
    return QString::fromUtf8(duk_require_string(engine, index));
}

QByteArray Read(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool IsReadable(int descriptor, int milliseconds)
{
    pollfd watched{descriptor, POLLIN, 0};
    return ::poll(&watched, 1, milliseconds) == 1;
}

int PushText(duk_context* engine, const QByteArray& text)
{
    duk_push_lstring(engine, text.constData(), static_cast<duk_size_t>(text.size()));
    return 1;
}

int PushBoolean(duk_context* engine, bool value)
{
    duk_push_boolean(engine, value);
    return 1;
}

int ReadFile(duk_context* engine)
{
    QFile file(GetText(engine, 0));
    if (file.open(QIODevice::ReadOnly))
        return PushText(engine, file.readAll());
    duk_push_null(engine);
    return 1;
}

int WriteFile(duk_context* engine)
{
    const QString path = GetText(engine, 0);
    const QByteArray text = duk_require_string(engine, 1);
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    return PushBoolean(engine, file.open(QIODevice::WriteOnly) && file.write(text) == text.size());
}

int CopyFile(duk_context* engine)
{
    const QString target = GetText(engine, 1);
    QDir().mkpath(QFileInfo(target).path());
    return PushBoolean(engine, QFile::copy(GetText(engine, 0), target));
}

int Exists(duk_context* engine)
{
    const QFileInfo info(GetText(engine, 0));
    duk_push_int(engine, info.isDir() ? 2 : (info.exists() ? 1 : 0));
    return 1;
}

// Programs of another system run by what RUN_HELPER names.
int Execute(duk_context* engine)
{
    QStringList words = qEnvironmentVariable("RUN_HELPER").split(QLatin1Char(' '), Qt::SkipEmptyParts);
    words << GetText(engine, 0);
    return PushBoolean(engine, QProcess::startDetached(words.takeFirst(), words, QString(), &helper));
}

int KillHelper(duk_context* /*engine*/)
{
    ::kill(static_cast<pid_t>(helper), SIGKILL);
    return 0;
}

int Connect(duk_context* engine)
{
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(duk_require_int(engine, 0)));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (::connect(socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        ::close(socket);
        socket = -1;
    }
    duk_push_int(engine, socket);
    return 1;
}

int Send(duk_context* engine)
{
    duk_size_t length = 0;
    const char* bytes = duk_require_lstring(engine, 1, &length);
    const auto sent = ::send(duk_require_int(engine, 0), bytes, length, MSG_NOSIGNAL);
    return PushBoolean(engine, sent == static_cast<ssize_t>(length));
}

// A line without its end; null when there is none in time, or the other end closes.
int Receive(duk_context* engine)
{
    const int socket = duk_require_int(engine, 0);
    const int patience = duk_require_int(engine, 1) * 1000;
    QByteArray line;
    char byte = 0;
    while (IsReadable(socket, patience) && ::recv(socket, &byte, 1, 0) == 1) {
        if (byte == '\n')
            return PushText(engine, line);
        line += byte;
    }
    duk_push_null(engine);
    return 1;
}

int Disconnect(duk_context* engine)
{
    ::close(duk_require_int(engine, 0));
    return 0;
}

int Now(duk_context* engine)
{
    static QElapsedTimer timer;
    if (!timer.isValid())
        timer.start();
    duk_push_number(engine, static_cast<double>(timer.elapsed()));
    return 1;
}

int Sleep(duk_context* engine)
{
    QThread::msleep(duk_require_uint(engine, 0));
    return 0;
}

// The test's next command; empty when there is none in so many milliseconds, null when the test has gone.
int Command(duk_context* engine)
{
    char byte = 0;
    while (IsReadable(STDIN_FILENO, duk_require_int(engine, 0))) {
        if (::read(STDIN_FILENO, &byte, 1) != 1) {
            duk_push_null(engine);
            return 1;
        }
        if (byte != '\n') {
            command += byte;
            continue;
        }
        const QByteArray line = QByteArray::fromStdString(command);
        command.clear();
        return PushText(engine, line);
    }
    return PushText(engine, {});
}

int Say(duk_context* engine)
{
    std::puts(duk_require_string(engine, 0));
    std::fflush(stdout);
    return 0;
}

int Exit(duk_context* engine)
{
    ::_exit(duk_require_int(engine, 0));
}

const duk_function_list_entry cFunctions[] = {
    {"read", ReadFile, 1},         {"write", WriteFile, 2}, {"copy", CopyFile, 2},
    {"exists", Exists, 1},         {"execute", Execute, 1}, {"killHelper", KillHelper, 0},
    {"connect", Connect, 1},       {"send", Send, 2},       {"receive", Receive, 2},
    {"disconnect", Disconnect, 1}, {"now", Now, 0},         {"sleep", Sleep, 1},
    {"command", Command, 1},       {"say", Say, 1},         {"exit", Exit, 1},
    {nullptr, nullptr, 0}};
}  // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    duk_context* engine = duk_create_heap_default();
    duk_push_object(engine);
    duk_put_function_list(engine, -1, cFunctions);
    duk_push_string(engine, arguments.at(1).toUtf8().constData());
    duk_put_prop_string(engine, -2, "argument");
    duk_put_global_string(engine, "native");
    for (const QString& file : arguments.mid(2)) {
        const QByteArray text = Read(file);
        duk_push_string(engine, file.toUtf8().constData());
        if (duk_pcompile_lstring_filename(engine, 0, text.constData(),
                                          static_cast<duk_size_t>(text.size())) != 0 ||
            duk_pcall(engine, 0) != 0) {
            duk_get_prop_string(engine, -1, "stack");
            std::fprintf(stderr, "%s\n", duk_safe_to_string(engine, -1));
            return 1;
        }
        duk_pop(engine);
    }
    duk_destroy_heap(engine);
    return 0;
}
