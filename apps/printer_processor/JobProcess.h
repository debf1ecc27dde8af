#pragma once

#include <QProcess>

#include <memory>

// A command that is run for a job. It ends with this process, however that ends, as far as the system sees to
// it: the next start of the receiver runs it again, and never two for one job at once. On Linux the thread
// that started it must live as long as the process.
class JobProcess : public QProcess
{
public:
    JobProcess();
    ~JobProcess() override;

    // Starts the command without a shell; false with errorString() set when that fails.
    bool Start(const QString& program, const QStringList& arguments);

protected:
    void setupChildProcess() override;

private:
    struct Bond;

    std::unique_ptr<Bond> mBond;
};
