#include "tests/support/ChildProcess.h"
#include "tests/support/Test.h"

#include <QCoreApplication>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <csignal>
#include <memory>

// Several parties of one process handle the signal of lost memory, one on top of the other, and leave in any
// order: modules with guarded memory, which are unloaded, and somebody who knows nothing of them.
namespace
{
constexpr int cReached = 5;  // status of a child whose first handler got the signal

struct sigaction sBelow = {};

void EndReached(int)
{
    ::_exit(cReached);
}

void CallBelow(int signal, siginfo_t* information, void* context)
{
    sBelow.sa_sigaction(signal, information, context);
}

void SetHandler(void (*handler)(int, siginfo_t*, void*))
{
    struct sigaction action = {};
    action.sa_flags = SA_SIGINFO;
    action.sa_sigaction = handler;
    ::sigaction(SIGBUS, &action, &sBelow);
}

// A file of which a byte can be mapped but is not there.
int OpenEmpty(const QString& path)
{
    return ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_TRUNC, 0600);
}

// A copy of the module, with variables of its own.
class Module
{
public:
    explicit Module(const QString& path) : mFile(OpenEmpty(path + "-memory"_q)), mHandle(nullptr, &::dlclose)
    {
        QFile::copy(QCoreApplication::applicationDirPath() + "/guarded_module.so"_q, path);
        mHandle.reset(::dlopen(QFile::encodeName(path).constData(), RTLD_NOW | RTLD_LOCAL));
        Map();
    }
    ~Module() { Unmap(); }
    void MapAnew()
    {
        Unmap();
        Map();
    }
    int Read() { return reinterpret_cast<int (*)()>(::dlsym(mHandle.get(), "ReadGuarded"))(); }

private:
    void Map() { reinterpret_cast<void (*)(int)>(::dlsym(mHandle.get(), "MapGuarded"))(mFile); }
    void Unmap() { reinterpret_cast<void (*)()>(::dlsym(mHandle.get(), "UnmapGuarded"))(); }

    int mFile;
    std::unique_ptr<void, int (*)(void*)> mHandle;
};
}  // namespace

// Arguments: a folder, and the steps: 1, 2 a module comes; -1, -2 it leaves; "top": another handler is set;
// "gone": the system's own way is put back; "again", "read": the first module maps anew, and reads its
// memory.
CHILD_ROLE(HandleSignals)
{
    ::signal(SIGBUS, EndReached);
    std::unique_ptr<Module> modules[2];
    for (const QString& step : arguments.mid(1)) {
        const int number = step.toInt();
        if (number > 0)
            modules[number - 1] = std::make_unique<Module>(arguments.at(0) + QLatin1Char('/') + step);
        else if (number < 0)
            modules[-number - 1].reset();
        else if (step == "top"_q)
            SetHandler(CallBelow);
        else if (step == "gone"_q)
            ::signal(SIGBUS, SIG_DFL);
        else if (step == "again"_q)
            modules[0]->MapAnew();
        else if (modules[0]->Read() != 0)
            return 1;
    }
    if (arguments.contains("read"_q))
        return 0;
    const int file = OpenEmpty(arguments.at(0) + "/strange"_q);
    return *static_cast<volatile char*>(::mmap(nullptr, 1, PROT_READ, MAP_SHARED, file, 0));
}

TEST(SignalHandlers, SignalNeverLeadsIntoCodeThatIsGone)
{
    const struct
    {
        QStringList steps;
        int status;
    } cases[] = {
        {{"1"_q, "2"_q, "-1"_q, "-2"_q}, cReached},
        {{"1"_q, "2"_q, "-2"_q, "-1"_q}, cReached},
        {{"1"_q, "2"_q, "-1"_q}, cReached},
        {{"1"_q, "top"_q, "-1"_q}, cReached},
        {{"1"_q, "2"_q, "read"_q}, 0},
        {{"1"_q, "top"_q, "read"_q}, 0},
        {{"1"_q, "gone"_q, "again"_q, "read"_q}, 0},
    };
    for (const auto& test : cases) {
        const Sandbox sandbox;
        ChildProcess child("HandleSignals"_q, QStringList{sandbox.GetPath()} + test.steps);
        EXPECT_EQ(child.WaitForExit(), test.status) << test.steps.join(QLatin1Char(' ')).toStdString();
    }
}
