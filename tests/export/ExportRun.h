#pragma once

#include "ExportFixture.h"
#include "export/GCPTSaveAsTool.h"
#include "export/GIDCSPSaveAsAction.h"
#include "foundation/strings/GUserMessage.h"
#include "tests/support/fake_host/FakeHost.h"

// Everything that an export needs in this process: the texts, an alert service that keeps what it is told as
// "title|text", a host with one document in front, and the action.
class ExportParty
{
public:
    ExportParty();
    ~ExportParty();
    ExportParty(const ExportParty&) = delete;
    ExportParty& operator=(const ExportParty&) = delete;

    // Runs an export of the Hopbox of a registry key.
    void Export(const GString& key);

    // The same with what the test does to the tool before.
    void Export(const GString& key, const std::function<void(GCPTSaveAsTool&)>& prepare);

    FakeHost host;
    GIDCSPSaveAsAction action;
    QStringList alerts;
};

// Registers a Hopbox with a project archive of its own, without the command-line tool; gives its key. Its
// output settings are texts KEY=VALUE.
GString MakeHopbox(const GString& name, const QStringList& settings = {});

// An alert of a failed export as ExportParty keeps it, and the text in its frame.
QString MakeAlert(const QString& text);
QString MakeFramedAlert(const char* text);
