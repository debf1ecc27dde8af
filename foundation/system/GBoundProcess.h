#pragma once

#include <QProcess>

#include <memory>

// A program that does not outlive this process, however this process ends. On Linux that holds also when the
// process is killed while it starts the program; the thread that starts it must live as long as the process.
// On Windows a program whose starter is killed in that very moment runs on.
//
// As every QProcess, an object belongs to the thread that made it. The destructor of one whose program still
// runs ends that by force, and waits for it.
class GBoundProcess : public QProcess
{
public:
    // What becomes of the program when this process is gone. Where the system knows no request that every
    // program heeds, as on Windows, it is always ended by force.
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
