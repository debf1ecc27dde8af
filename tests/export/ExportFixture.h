#pragma once

#include "export/PlugInPrefModule.h"
#include "export/PlugInPreferences.h"
#include "foundation/prefs/GPreferences.h"
#include "foundation/system/GFileSystemBase.h"
#include "tests/support/Sandbox.h"
#include "tests/support/TestFiles.h"

#include <QDir>
#include <QDirIterator>

#include <gtest/gtest.h>

// The plug-in's settings in the store, in the root that this process has, as at the plug-in's start; and out
// again, as at its end.
class PlugInStore
{
public:
    static GPathName GetFile()
    {
        return GFileSystemBase::GetSpecialPath(GSpecialPath::cUserPreferences)
            .GetChild(QStringLiteral("Junctra_CC2019_64_InDesign"))
            .GetChild(PlugInPreferences::cFileName);
    }

    PlugInStore()
    {
        GPreferences::Initialize();
        GFileSystemBase::CreateFolder(GetFile().GetParent());
        GPreferences::SetPrefModule(GPreferences::cUserFileModule,
                                    std::make_unique<PlugInPrefModule>(GetFile()));
    }
    ~PlugInStore() { GPreferences::Finalize(); }
    PlugInStore(const PlugInStore&) = delete;
    PlugInStore& operator=(const PlugInStore&) = delete;
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
    static QStringList List(const GPathName& folder)
    {
        QStringList names;
        QDirIterator files(folder.GetNativePath(),
                           QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                           QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString name = QDir(folder.GetNativePath()).relativeFilePath(files.next());
            names.append(files.fileInfo().isDir() && !files.fileInfo().isSymLink() ? name + QLatin1Char('/')
                                                                                   : name);
        }
        names.sort();
        return names;
    }

private:
    // Before the store: first of the members.
    struct EmptyRoot
    {
        EmptyRoot()
        {
            QDir root(GetSandbox().GetPath());
            for (const QString& name : root.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
                GFileSystemBase::TryToRemoveFolder(GPathName(root.filePath(name)));
        }
    };
    EmptyRoot mEmptyRoot;

protected:
    PlugInStore store;
};
