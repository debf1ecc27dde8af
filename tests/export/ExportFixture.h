#pragma once

#include "export/PlugInPrefModule.h"
#include "export/PlugInPreferences.h"
#include "foundation/prefs/GPreferences.h"
#include "foundation/system/GFileSystemBase.h"
#include "tests/support/Test.h"

// The plug-in's settings in the store, in the root that this process has, as at the plug-in's start; and out
// again, as at its end.
class PlugInStore
{
public:
    static GPathName GetFile()
    {
        return GFileSystemBase::GetSpecialPath(GSpecialPath::cUserPreferences)
            .GetChild("Junctra_CC2019_64_InDesign"_q)
            .GetChild(PlugInPreferences::cFileName);
    }

    // The list of temporary files as another host would read it now.
    static GPrefGroup ReadList()
    {
        GPrefGroup list;
        PlugInPrefModule(GetFile()).GetGroupPreferences("SmartFileList", list);
        return list;
    }

    PlugInStore()
    {
        GPreferences::Initialize();
        GFileSystemBase::CreateFolder(GetFile().GetParent());
        Reopen();
    }
    ~PlugInStore() { GPreferences::Finalize(); }
    PlugInStore(const PlugInStore&) = delete;
    PlugInStore& operator=(const PlugInStore&) = delete;

    void Reopen() const
    {
        GPreferences::SetPrefModule(GPreferences::cUserFileModule,
                                    std::make_unique<PlugInPrefModule>(GetFile()));
    }
};

// An empty root with the plug-in's settings open. Some folders are computed once per process, so all tests of
// a program have one root, which is emptied for each.
class ExportFixture : public testing::Test
{
protected:
    static Sandbox& GetSandbox()
    {
        static Sandbox sandbox;
        return sandbox;
    }

    static GPathName GetTemporary() { return GFileSystemBase::GetSpecialPath(GSpecialPath::cTemporary); }

    // What lies in a folder, at any depth, as relative paths in order. Folders end in "/".
    static QStringList List(const GPathName& folder) { return ReadTree(folder.GetNativePath()).keys(); }

private:
    // Before the store: first of the members.
    struct EmptyRoot
    {
        EmptyRoot()
        {
            const QDir root(GetSandbox().GetPath());
            for (const QString& name : root.entryList(QDir::AllEntries | QDir::NoDotAndDotDot))
                if (!QFile::remove(root.filePath(name)))
                    GFileSystemBase::DropFolder(GPathName(root.filePath(name)));
        }
    };
    EmptyRoot mEmptyRoot;

protected:
    PlugInStore store;
};
