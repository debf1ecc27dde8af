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

// A user who wants the export: the sample lacks two pictures.
class WillingUser final : public IHostFrontend
{
public:
    void BeginCommand(const QString&, int) override {}
    void BeginStep(const QString&) override {}
    bool IsCancelled() override { return false; }
    void EndCommand() override {}
    int32_t ShowAlert(const QString&, const QString&, const QString&, const QString&, int32_t button,
                      int32_t) override
    {
        return button;
    }
    Decision AskToGoOn(const QString&, const QStringList&) override { return Decision::GoOn; }
    QString AskForSavePath(const QString&) override { return {}; }
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

int32_t OpenSample(void*, const hopbox_text* folder)
{
    const QDir place(QString::fromUtf8(folder->bytes, static_cast<int>(folder->length)));
    ScribusHost& services = GetState().services;
    const QString document = place.filePath(QStringLiteral("Sample.sla.gz"));
    QString reason;
    if (!QFile::copy(cDocument, document) || !services.OpenDocument(document, reason))
        return HOPBOX_FAILED;
    const ScribusHost::BookPtr book = services.NewBook(place.filePath(QStringLiteral("Sample.slabook")));
    book->SetDocuments({document});
    return book->Save(reason) ? HOPBOX_OK : HOPBOX_FAILED;
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
}  // namespace

extern "C" Q_DECL_EXPORT const hopbox_adaptor* hopbox_adaptor_entry(uint32_t)
{
    static const hopbox_adaptor adaptor = {sizeof adaptor,   HOPBOX_VERSION, &HostTable::GetTable(),
                                           &GetState().host, OpenSample,     CloseAll};
    return &adaptor;
}
