#include "FakeAdaptor.h"

#include "plugin/boundary/hopbox_adaptor.h"
#include "tests/support/TestFiles.h"
#include "tests/support/Texts.h"

#include <QDir>
#include <QFileInfo>

#include <utility>

// The fake host as a library for hopbox-host-check. What FAKE_ADAPTOR_LIE names is wrong with its table.

using namespace FakeAdaptor;

QString FakeAdaptor::Read(const hopbox_text& text)
{
    return QString::fromUtf8(text.bytes, static_cast<int>(text.length));
}

FakeAdaptor::State& FakeAdaptor::GetState()
{
    static auto* const state = new State;
    return *state;
}

static bool hasFront = false;
static QString savePath;

static int32_t OpenSample(void*, const hopbox_text* folder)
{
    const QString place = Read(*folder);
    FakeDocument document;
    document.name = "Sample.indd"_q;
    document.path = place + "/Sample.indd"_q;
    document.pageCount = 2;
    FakeBook book;
    book.path = place + "/Sample.indb"_q;
    book.name = "Sample.indb"_q;
    book.documentPaths = QStringList{document.path};
    GetState().services.documents = {document};
    GetState().services.books = {book};
    hasFront = true;
    return WriteFile(document.path, "document") && WriteFile(book.path, "book") ? HOPBOX_OK : HOPBOX_FAILED;
}

static int32_t CloseAll(void*)
{
    for (FakeDocument& document : GetState().services.documents)
        document.isOpen = GetState().leavesOpen;
    if (!GetState().leavesBooksOpen)
        GetState().services.books.clear();
    hasFront = GetState().leavesOpen;
    return GetState().closing;
}

// What was opened without a window is not in front.
int32_t FakeAdaptor::GetFrontDocument(void* host, Handle* document)
{
    return hasFront ? HostTable::GetTable().get_front_document(host, document) : int32_t(HOPBOX_NONE);
}

static int32_t CountHandles(void*, int32_t* count)
{
    *count = static_cast<int32_t>(GetState().host.GetHandleCount());
    return HOPBOX_OK;
}

// The work is done to its end, and taken back.
static int32_t CancelNext(void*)
{
    FakeHost& services = GetState().services;
    services.onRun = [&services] { services.CancelByUser(); };
    services.onMade = [](const QString& path) {
        if (!GetState().restName.isEmpty() && !path.contains("/Cancelled "_q))
            WriteFile(QFileInfo(path).path() + GetState().restName, "rest");
        if (!GetState().leavesRest)
            QFileInfo(path).isDir() ? QDir(path).removeRecursively() : QFile::remove(path);
    };
    return HOPBOX_OK;
}

int32_t FakeAdaptor::RunCommand(void* host, Handle command)
{
    const int32_t result = HostTable::GetTable().run_command(host, command);
    GetState().services.onRun = nullptr;
    GetState().services.onMade = nullptr;
    return result;
}

static int32_t IsResting(void*, int32_t* isResting)
{
    *isResting = GetState().services.modalTokens.empty() ? 0 : 1;
    return HOPBOX_OK;
}

static int32_t OpenUnsaved(void*, const hopbox_text* path)
{
    auto& documents = GetState().services.documents;
    savePath = Read(*path);
    documents.insert(documents.begin(), documents.front());
    documents.front().path = GetState().namesFileEarly ? savePath : QString();
    documents.front().isSaved = false;
    return HOPBOX_OK;
}

static int32_t nextButton = 1;

static int32_t AnswerAlert(void*, int32_t button)
{
    nextButton = button;
    return HOPBOX_OK;
}

static int32_t ShowAlert(void* host, const hopbox_text* text, const hopbox_text buttons[3], int32_t first,
                         int32_t last, int32_t* pressed)
{
    const int32_t result = HostTable::GetTable().show_alert(host, text, buttons, first, last, pressed);
    *pressed = std::exchange(nextButton, 1);
    return result;
}

std::map<Handle, int32_t>& FakeAdaptor::GetKinds()
{
    static auto* const kinds = new std::map<Handle, int32_t>;
    return *kinds;
}

int32_t FakeAdaptor::CreateCommand(void* host, int32_t kind, Handle* command)
{
    const int32_t result = HostTable::GetTable().create_command(host, kind, command);
    if (result == HOPBOX_OK)
        GetKinds()[*command] = kind;
    return result;
}

static int32_t ReadJobOptions(void* host, Handle command, const hopbox_text* path)
{
    return ReadFile(Read(*path)).endsWith("setdistillerparams\n")
               ? HostTable::GetTable().read_job_options(host, command, path)
               : int32_t(HOPBOX_FAILED);
}

static int32_t SaveDocument(void* host, Handle document)
{
    if (!WriteFile(savePath, "document"))
        return HOPBOX_FAILED;
    GetState().services.documents.front().path = savePath;
    return HostTable::GetTable().save_document(host, document);
}

extern "C" Q_DECL_EXPORT const hopbox_adaptor* hopbox_adaptor_entry(uint32_t)
{
    static const hopbox_adaptor adaptor = {
        sizeof adaptor, HOPBOX_VERSION, &GetState().table, &GetState().host, OpenSample, CloseAll,
        CountHandles,   CancelNext,     OpenUnsaved,       AnswerAlert,      IsResting};
    GetState().table.show_alert = ShowAlert;
    GetState().table.create_command = CreateCommand;
    GetState().table.get_front_document = GetFrontDocument;
    GetState().table.run_command = RunCommand;
    GetState().table.read_job_options = ReadJobOptions;
    GetState().table.save_document = SaveDocument;
    Lie(qgetenv("FAKE_ADAPTOR_LIE"));
    return &adaptor;
}
