#pragma once

#include <QProcess>

#include <memory>

// A program that does not outlive this process, however this process ends. On Linux this also holds when this
// process is killed while it starts the program; the thread that starts the program must live as long as this
// process. On Windows there is one exception: if this process is killed at that moment, the program runs on.
//
// Like every QProcess, an object belongs to the thread that made it. If the program still runs, the
// destructor ends it by force and waits for its end.
class GBoundProcess : public QProcess
{
public:
    // What happens to the program when this process has ended. If the system has no request to end that every
    // program obeys, as on Windows, the program is always ended by force.
    enum class Ending
    {
        cByRequest,
        cByForce
    };

    explicit GBoundProcess(Ending ending);
    ~GBoundProcess() override;

    // Starts the program, without a shell, and waits until it runs. False with errorString() set when it
    // can't be started.
    [[nodiscard]] bool Start(const QString& program, const QStringList& arguments, OpenMode mode = ReadWrite);

protected:
    void setupChildProcess() override;

private:
    struct Bond;

    std::unique_ptr<Bond> mBond;
};
