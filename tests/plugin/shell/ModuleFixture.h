#pragma once

#include "ExportRun.h"
#include "plugin/boundary/ModulePlugIn.h"
#include "plugin/host/CActionComponent.h"
#include "plugin/host/IPlugIn.h"

#include <QLibrary>

constexpr ActionID cDocument = 1674244;
constexpr ActionID cBook = 1674246;

// Sets an environment variable for its lifetime.
class Variable
{
public:
    Variable(const char* name, const char* value)
        : mName(name), mOld(qgetenv(name)), mWasSet(qEnvironmentVariableIsSet(name))
    {
        qputenv(mName, value);
    }
    ~Variable() { mWasSet ? qputenv(mName, mOld) : qunsetenv(mName); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

private:
    const char* mName;
    QByteArray mOld;
    bool mWasSet;
};

// The module as a host has it: loaded at run time, and known by its entry alone.
class Module : public testing::Test
{
protected:
    Module() : library(QStringLiteral(HOPBOX_MODULE)) { Load(); }

    ~Module() override
    {
        EXPECT_EQ(module->GetHandleCount(), 0U);
        EXPECT_TRUE(plugIn->Unload());
        EXPECT_EQ(host.GetUnreleased(), QStringList());
        library.unload();
    }

    void Load()
    {
        const auto entry = reinterpret_cast<hopbox_entry_function>(library.resolve(HOPBOX_ENTRY_NAME));
        EXPECT_NE(entry, nullptr) << library.errorString().toStdString();
        module = std::make_unique<ModulePlugIn>(entry);
        plugIn = module.get();
    }

    // The entry for who shares the compiler, past the boundary.
    void LoadDirectly()
    {
        plugIn = reinterpret_cast<GetPlugInFunction>(library.resolve(cGetPlugInName))();
        ASSERT_EQ(plugIn->GetInterfaceVersion(), IHostServices::cVersion);
    }

    // What the plug-in says against the services; empty when it takes them.
    QString GiveServices(IHostServices* services)
    {
        PMString reason;
        const bool isTaken = plugIn->Load(services, reason);
        EXPECT_EQ(isTaken, reason.IsEmpty());
        return reason.GetString();
    }

    // Sets `error` to what the plug-in says against it.
    IActionComponent* Create()
    {
        PMString text;
        IActionComponent* component = plugIn->CreateActionComponent(text);
        error = text.GetString();
        return component;
    }

    // One document of three pages in front, which is also the book.
    void MakeDocumentAndBook()
    {
        FakeDocument document;
        document.name = "Report.indd"_q;
        document.path = sandbox.GetPath(document.name);
        document.pageCount = 3;
        host.documents = {document};
        FakeBook book;
        book.path = sandbox.GetPath("Year.indb"_q);
        book.documentPaths = QStringList{document.path};
        host.books = {book};
    }

    static void SpeakGerman()
    {
        const GPathName folder = GFileSystemBase::GetSpecialPath(GSpecialPath::cUserPreferences)
                                     .GetChild("Junctra_CC2019_64_InDesign"_q);
        GFileSystemBase::CreateFolder(folder);
        PlugInPrefModule settings(folder.GetChild("JunctraPlugins.pref"_q));
        settings.Set("General", "Language", "deDE"_q);
        settings.FlushPrefs();
    }

    Sandbox sandbox;
    QLibrary library;
    FakeHost host;
    std::unique_ptr<ModulePlugIn> module;
    IPlugIn* plugIn = nullptr;
    QString error;
};
