#include "hosts/scribus/host/ScribusHost.h"
#include "hosts/scribus/runner/IHostFrontend.h"
#include "plugin/boundary/HostTable.h"
#include "plugin/boundary/hopbox_adaptor.h"

#include <QDir>
#include <QFile>

// The Scribus engine of layout-host, without its window, as a library for hopbox-host-check.

namespace
{
const QString cDocument = QStringLiteral("/usr/share/scribus/templates/nl2/nl2.sla.gz");

// A user who wants the export: the sample lacks two pictures. Who presses Cancel does so in one command.
class WillingUser final : public IHostFrontend
{
public:
    void BeginCommand(const QString&, int) override {}
    void BeginStep(const QString&) override {}
    bool IsCancelled() override { return cancelsNext; }
    void EndCommand() override { cancelsNext = false; }
    int32_t ShowAlert(const QString&, const QString&, const QString&, const QString&, int32_t,
                      int32_t) override
    {
        return nextButton;
    }
    Decision AskToGoOn(const QString&, const QStringList&) override { return Decision::GoOn; }
    QString AskForSavePath(const QString&) override { return savePath; }

    bool cancelsNext = false;
    int32_t nextButton = 1;
    QString savePath;
};

struct State
{
    State() { services.SetFrontend(&user); }

    WillingUser user;
    ScribusHost services;
    HostTable host{services};
};

State& GetState()
{
    static auto* const state = new State;
    return *state;
}

QString Read(const hopbox_text& text)
{
    return QString::fromUtf8(text.bytes, static_cast<int>(text.length));
}

int32_t OpenSample(void*, const hopbox_text* folder)
{
    const QDir place(Read(*folder));
    ScribusHost& services = GetState().services;
    const QString document = place.filePath(QStringLiteral("Sample.sla.gz"));
    if (!QFile::copy(cDocument, document) || !services.OpenDocument(document).HasSucceeded())
        return HOPBOX_FAILED;
    const ScribusHost::BookPtr book = services.NewBook(place.filePath(QStringLiteral("Sample.slabook")));
    book->SetDocuments({document});
    return book->Save().HasSucceeded() ? HOPBOX_OK : HOPBOX_FAILED;
}

int32_t CloseAll(void*)
{
    ScribusHost& services = GetState().services;
    while (services.GetActiveDocument())
        services.CloseDocument(services.GetActiveDocument());
    while (services.GetActiveBook())
        services.CloseBook(services.GetActiveBook());
    return HOPBOX_OK;
}

int32_t CountHandles(void*, int32_t* count)
{
    *count = static_cast<int32_t>(GetState().host.GetHandleCount());
    return HOPBOX_OK;
}

int32_t CancelNext(void*)
{
    GetState().user.cancelsNext = true;
    return HOPBOX_OK;
}

int32_t AnswerAlert(void*, int32_t button)
{
    GetState().user.nextButton = button;
    return HOPBOX_OK;
}

int32_t IsResting(void*, int32_t* isResting)
{
    *isResting = GetState().services.IsModal() ? 1 : 0;
    return HOPBOX_OK;
}

int32_t OpenUnsaved(void*, const hopbox_text* path)
{
    GetState().user.savePath = Read(*path);
    return GetState().services.NewDocument(cDocument).HasSucceeded() ? HOPBOX_OK : HOPBOX_FAILED;
}
}  // namespace

extern "C" Q_DECL_EXPORT const hopbox_adaptor* hopbox_adaptor_entry(uint32_t)
{
    static const hopbox_adaptor adaptor = {sizeof adaptor,   HOPBOX_VERSION, &HostTable::GetTable(),
                                           &GetState().host, OpenSample,     CloseAll,
                                           CountHandles,     CancelNext,     OpenUnsaved,
                                           AnswerAlert,      IsResting};
    return &adaptor;
}
