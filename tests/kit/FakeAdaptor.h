#pragma once

#include "plugin/boundary/BoundaryText.h"
#include "plugin/boundary/HostTable.h"
#include "tests/support/fake_host/FakeHost.h"

// The fake host as a library for hopbox-host-check, and what its lies change of it.
namespace FakeAdaptor
{
using Table = hopbox_host_table;
using Handle = hopbox_handle;

struct State
{
    FakeHost services;
    HostTable host{services};
    Table table = HostTable::GetTable();
    bool leavesOpen = false;
    bool leavesBooksOpen = false;
    bool leavesRest = false;
    bool namesFileEarly = false;
    int32_t closing = HOPBOX_OK;
    QString restName;  // beside what the plug-in exports
};

State& GetState();

QString Read(const hopbox_text& text);

// The functions that differ from those of every HostTable.
int32_t GetFrontDocument(void* host, Handle* document);
int32_t RunCommand(void* host, Handle command);
int32_t CreateCommand(void* host, int32_t kind, Handle* command);

// The kinds of the commands, for lies about one of them.
std::map<Handle, int32_t>& GetKinds();

// Makes wrong of the table, or of what it stands on, what a name says; nothing for a name that is none.
void Lie(const QByteArray& name);
}  // namespace FakeAdaptor
