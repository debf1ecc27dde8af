#pragma once

#include "export/GCPTSaveAsTool.h"
#include "export/GIDCSPSaveAsAction.h"
#include "tests/support/fake_host/FakeHost.h"

#include <QProcess>
#include <QTemporaryDir>

// Everything that exports need, below a root of its own: registered Hopboxes with one project archive, the
// plug-in's settings, a host whose PDF command writes 600 bytes, and a Hopbox process that takes tickets up.
class Exporter
{
public:
    // The archive holds job options of so many bytes that no compression makes smaller.
    Exporter(int hopboxes, int archiveSize);

    // The archive holds these job options.
    Exporter(int hopboxes, const QByteArray& jobOptions);
    ~Exporter();
    Exporter(const Exporter&) = delete;
    Exporter& operator=(const Exporter&) = delete;

    // One export from OK to the sent ticket; gives the seconds that it took, without the host's command.
    // False in `isDone` when it failed.
    double Export(bool& isDone);

    const GString& GetKey() const { return mKey; }
    const GPathName& GetArchive() const { return mArchive; }
    const GPathName& GetJobOptions() const { return mJobOptions; }

private:
    void Register(int hopboxes);

    QTemporaryDir mRoot;
    GPathName mJobOptions;
    GPathName mArchive;
    GString mKey;
    FakeHost mHost;
    GIDCSPSaveAsAction mAction;
    QProcess mReceiver;
};
