#include "SimulatedApplication.h"
#include "tests/support/ChildRoles.h"
#include "tests/support/SecondUser.h"

#include <QElapsedTimer>
#include <QJsonDocument>
#include <QThread>

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>
#include <list>

// Who may speak to the helper: the script that knows the secret, one at a time, and nobody else.

namespace
{
// A connection to the helper.
class Stranger
{
public:
    explicit Stranger(const QJsonObject& place) : mSocket(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<uint16_t>(place.value("port"_q).toInt()));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        EXPECT_EQ(::connect(mSocket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    }
    ~Stranger() { ::close(mSocket); }
    Stranger(const Stranger&) = delete;
    Stranger& operator=(const Stranger&) = delete;

    void Say(const QByteArray& bytes)
    {
        ::send(mSocket, bytes.constData(), static_cast<size_t>(bytes.size()), MSG_NOSIGNAL);
    }

    // All that comes until the helper closes; "open" where it has not within 20 s.
    QByteArray HearAll()
    {
        QByteArray all;
        char part[1024];
        for (;;) {
            pollfd watched{mSocket, POLLIN, 0};
            if (::poll(&watched, 1, 20000) != 1)
                return "open";
            const auto count = ::recv(mSocket, part, sizeof part, 0);
            if (count <= 0)
                return all;
            all.append(part, static_cast<int>(count));
        }
    }

    // As much as comes until a line ends; empty when the helper closes.
    QByteArray HearLine()
    {
        QByteArray line;
        char byte = 0;
        while (!line.endsWith('\n') && ::recv(mSocket, &byte, 1, 0) == 1)
            line += byte;
        return line;
    }

private:
    int mSocket;
};

QByteArray MakeHello(const QString& secret, int version = 1)
{
    return QJsonDocument(QJsonObject{{"hello"_q, version}, {"secret"_q, secret}})
               .toJson(QJsonDocument::Compact) +
           '\n';
}

// Starts a helper without an application, and waits until there is one.
void StartHelper(QProcess& process, const Workplace& workplace)
{
    process.setProcessEnvironment(MakeHelperEnvironment(workplace));
    process.start(GetProgramPath("hopbox-bridge"), QStringList());
    while (workplace.ReadPlace().isEmpty())
        QThread::msleep(10);
}

bool CanConnect(const QJsonObject& place, uint32_t address)
{
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_port = htons(static_cast<uint16_t>(place.value("port"_q).toInt()));
    to.sin_addr.s_addr = htonl(address);
    const bool isConnected = ::connect(socket, reinterpret_cast<sockaddr*>(&to), sizeof to) == 0;
    ::close(socket);
    return isConnected;
}
}  // namespace

TEST(IndesignStranger, LearnsNothingAndHarmsNothing)
{
    Workplace workplace;
    SimulatedApplication application(workplace);
    application.Do("open", {{"path"_q, workplace.MakeDocument("Doc.indd"_q, {"1"_q})}});
    application.WaitForRest();
    const QJsonObject place = workplace.ReadPlace();
    const QString secret = place.value("secret"_q).toString();
    ASSERT_EQ(secret.size(), 64);
    const QByteArray hello = MakeHello(secret);
    const QByteArray page = "Host: 127.0.0.1\r\nOrigin: http://example.com\r\nContent-Length: 99\r\n\r\n";
    const struct
    {
        QByteArray said;
        QByteArray reply;
    } cCases[] = {
        {"GET / HTTP/1.1\r\n" + page, ""},
        {"POST / HTTP/1.1\r\n" + page + hello, ""},
        {hello.trimmed() + " HTTP/1.1\r\n" + page, ""},
        {"\n" + hello, ""},
        {"{}\n", ""},
        {"no JSON\n", ""},
        {MakeHello(QString()), ""},
        {MakeHello(secret.left(63)), ""},
        {MakeHello(QString(64, QLatin1Char('0'))), ""},
        {QByteArray(5000, ' '), ""},
        {"{\"poll\":true}\n", ""},
        {QByteArray(10, '{'), ""},  // and no end: the time for a hello is over
        {MakeHello(secret, 2), "{\"refused\":\"another version is spoken here\"}\n"},
        {hello, "{\"refused\":\"another application has the helper\"}\n"},
    };
    for (const auto& one : cCases) {
        Stranger stranger(place);
        stranger.Say(one.said);
        EXPECT_EQ(stranger.HearAll(), one.reply) << one.said.left(60).toStdString();
    }
    application.Choose();
    EXPECT_EQ(workplace.receiver->ReadLine().value("PrinterName"_q), "Press"_q);
    EXPECT_FALSE(CanConnect(place, INADDR_LOOPBACK + 1)) << "it listens elsewhere too";
}

TEST(IndesignStranger, CanNotTakeAllConnections)
{
    Workplace workplace;
    SimulatedApplication application(workplace);
    application.WaitForRest();
    std::list<Stranger> silent;
    for (int i = 0; i < 7; ++i)
        silent.emplace_back(workplace.ReadPlace());
    QElapsedTimer timer;
    timer.start();
    EXPECT_EQ(Stranger(workplace.ReadPlace()).HearAll(), "");
    EXPECT_LT(timer.elapsed(), 3000) << "it was closed for its silence only";
}

// The script itself keeps to its turns; who has its secret and does not is sent away.
TEST(IndesignStranger, AScriptSpeaksOneLineAtATime)
{
    const QByteArray poll = "{\"poll\":true}\n";
    const struct
    {
        QByteArray said;
        bool isEnded;
    } cCases[] = {{poll, false},
                  {"no JSON\n", false},
                  {"{\"answer\":7,\"result\":0}\n", false},
                  {QByteArray(4000000, ' ') + poll, false},
                  {poll + poll, true},
                  {QByteArray(4200000, ' '), true}};
    for (const auto& one : cCases) {
        SCOPED_TRACE(one.said.left(30).toStdString());
        Workplace workplace;
        QProcess helper;
        StartHelper(helper, workplace);
        Stranger script(workplace.ReadPlace());
        script.Say(MakeHello(workplace.ReadPlace().value("secret"_q).toString()));
        EXPECT_TRUE(script.HearLine().startsWith("{\"actions\":{\"1674244\":"));
        script.Say(one.said);
        EXPECT_EQ(script.HearLine(), one.isEnded ? "" : "{\"finished\":true}\n");
        if (!one.isEnded)
            script.Say(poll + poll);
        EXPECT_TRUE(helper.waitForFinished()) << "the helper goes when its script is sent away";
        EXPECT_EQ(helper.exitCode(), 0);
    }
}

TEST(IndesignStranger, ASecondHelperAndASecondApplicationGiveWay)
{
    Workplace workplace;
    SimulatedApplication first(workplace);
    first.WaitForRest();
    const QJsonObject place = workplace.ReadPlace();
    QProcess second;
    StartHelper(second, workplace);
    ASSERT_TRUE(second.waitForFinished());
    EXPECT_EQ(second.exitCode(), 0);
    EXPECT_EQ(workplace.ReadPlace(), place);
    SimulatedApplication other(workplace);
    other.Do("open", {{"path"_q, workplace.MakeDocument("Doc.indd"_q, {"1"_q})}});
    const QString alert = Find(other.Choose(), "alert").value("alert"_q).toString();
    EXPECT_EQ(alert, "another application has the helper"_q);
}

CHILD_ROLE(ReadTheSecret)
{
    if (!BecomeSecondUser())
        return 2;
    return QFile(arguments.at(0)).open(QIODevice::ReadOnly) ? 1 : 0;
}

TEST(IndesignStranger, AnotherUserCanNotReadTheSecret)
{
    Workplace workplace;
    SimulatedApplication(workplace).WaitForRest();
    ASSERT_TRUE(workplace.WaitForHelpersEnd());
    ASSERT_TRUE(WriteFile(workplace.GetPlaceFile(), "one that everybody may read"));
    SimulatedApplication application(workplace);
    application.WaitForRest();
    const QFileDevice::Permissions others = QFileDevice::ReadGroup | QFileDevice::ReadOther;
    EXPECT_FALSE(QFile::permissions(workplace.GetPlaceFile()) & others);
    EXPECT_FALSE(QFile::permissions(QFileInfo(workplace.GetPlaceFile()).path()) & others);
    if (!CanBecomeSecondUser())
        GTEST_SKIP() << "only root can be somebody else";
    // The folders above are open, so that it is the file's own folder that keeps others out.
    QFile::setPermissions(workplace.sandbox.GetPath(), QFileDevice::Permissions(0x7755));
    EXPECT_EQ(ChildProcess("ReadTheSecret"_q, {workplace.GetPlaceFile()}).WaitForExit(), 0);
}

// Also where there is no display to show windows on.
TEST(IndesignHelper, AnswersItsCall)
{
    const std::pair<const char*, int> cases[] = {{"--help", 0}, {"--version", 0}, {"--halp", 2}};
    for (const auto& [call, status] : cases) {
        QProcess process;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            environment.remove(QLatin1String(name));
        process.setProcessEnvironment(environment);
        process.start(GetProgramPath("hopbox-bridge"), {QLatin1String(call)});
        ASSERT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit) << call;
        EXPECT_EQ(process.exitCode(), status) << call;
        EXPECT_TRUE((status == 0 ? process.readAllStandardOutput() : process.readAllStandardError())
                        .contains("hopbox-bridge"));
    }
}
