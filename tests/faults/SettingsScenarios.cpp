#include "Scenarios.h"
#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/prefs/GPrefFileModule.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "foundation/prefs/GPrefSharedFileModule.h"
#include "foundation/system/GDurableFile.h"
#include "foundation/system/GLockFile.h"
#include "foundation/system/GOwnedFile.h"
#include "hopbox/HopboxProject.h"
#include "hopbox/HopboxRegistry.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Test.h"

#include <cstdio>
#include <exception>

namespace
{
const QStringList cLockFiles = {"*lock"_q};

// Runs a step; gives the status of a role, with the reason of a failure on standard error.
int RunStep(const std::function<void()>& step)
{
    try {
        step();
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}

void RegisterThree(const QString&)
{
    HopboxRegistry registry;
    for (const char* name : {"One", "Two", "Three"}) {
        HopboxRegistryEntry entry;
        entry.pdfSettings = QString::fromLatin1(name);
        EXPECT_TRUE(registry.AddEntry(entry.pdfSettings, entry));
    }
}

QString LookAtRegistry(const QString&)
{
    const HopboxRegistry registry;
    QStringList lines;
    for (const QString& name : registry.GetActorNames()) {
        HopboxRegistryEntry entry;
        EXPECT_TRUE(registry.GetEntry(name, entry));
        lines.append(name + QLatin1Char(' ') + entry.pdfSettings);
    }
    lines.sort();
    return lines.join(QLatin1Char('\n')) + (registry.GetDamage() ? " damaged"_q : QString());
}

QString GetSettingsFile(const QString& root)
{
    return root + "/a.prefs"_q;
}

QString LookAtSettings(const QString& root)
{
    const GPrefSharedFileModule module(GPathName(GetSettingsFile(root)), GEncoding::GetUTF16());
    return module.Get("G", "K");
}

QString GetProject(const QString& root)
{
    return root + "/Project.hopbox"_q;
}

QString LookAtProjectSetting(const QString& root, const char* key)
{
    GPrefMemoryModule settings;
    HopboxProject project((GPathName(GetProject(root))));
    const GResult read = project.ReadSettings(settings);
    return read.HasSucceeded() ? settings.Get(HopboxProject::GetPlugInGroup(), key) : read.GetReason();
}

QString LookAtProject(const QString& root)
{
    return LookAtProjectSetting(root, "K");
}
}  // namespace

CHILD_ROLE(WriteDurably)
{
    return RunStep([&] {
        GDurableFile file(GPathName(arguments.at(0) + "/a"_q));
        file.Write("new", 3);
        file.Commit();
    });
}

CHILD_ROLE(WriteInTwoSteps)
{
    return RunStep([&] {
        GDurableFile file(GPathName(arguments.at(0) + "/a"_q));
        SayToParent("half");
        HearFromParent();
        file.Commit();
    });
}

// The rights of the old file count as well, and that a link to it stays one.
FaultScenario GetDurableWrite()
{
    const bool hasLinks = QDir::separator() == QLatin1Char('/');
    const auto prepare = [hasLinks](const QString& root) {
        const QString file = root + (hasLinks ? "/file"_q : "/a"_q);
        WriteFile(file, "old");
        QFile::setPermissions(file, QFile::ReadOwner | QFile::WriteOwner | QFile::ReadOther);
        EXPECT_TRUE(!hasLinks || QFile::link("file"_q, root + "/a"_q));
    };
    const auto look = [](const QString& root) {
        const int rights = static_cast<int>(QFile::permissions(root + "/a"_q));
        return "%1 %2%3"_q.arg(QString::fromLatin1(ReadFile(root + "/a"_q)))
            .arg(rights)
            .arg(QFileInfo(root + "/a"_q).isSymLink() ? " by a link"_q : QString());
    };
    return {"DurableWrite", prepare, QString(), {"WriteDurably"_q, "%1"_q}, look};
}

CHILD_ROLE(ChangeTwo)
{
    return RunStep([] {
        HopboxRegistry registry;
        const bool isFound = registry.ChangeEntry(
            "Two"_q, [](HopboxRegistryEntry& entry) { entry.pdfSettings = QString(3000, QLatin1Char('x')); });
        if (!isFound)
            std::fprintf(stderr, "Two is not registered.\n");
    });
}

FaultScenario GetRegistryChange()
{
    return {"RegistryChange", RegisterThree, QString(), {"ChangeTwo"_q}, LookAtRegistry, cLockFiles, true};
}

// The damaged file is kept before the new one takes its place.
FaultScenario GetDamagedRegistryChange()
{
    const auto damage = [](const QString& root) {
        RegisterThree(root);
        const QString path = HopboxRegistry::GetPathName().GetNativePath();
        for (const char* number : {"", ".1", ".2"})
            WriteFile(path + ".damaged"_q + QLatin1String(number), QByteArray("copy") + number);
        QFile file(path);
        file.open(QIODevice::Append);
        file.write("x");
    };
    // Of the three copies that are there before, only the oldest may go.
    const auto look = [](const QString& root) {
        const QString copy = HopboxRegistry::GetPathName().GetNativePath() + ".damaged"_q;
        const QByteArrayList copies = {ReadFile(copy), ReadFile(copy + ".1"_q), ReadFile(copy + ".2"_q)};
        const QString state = LookAtRegistry(root);
        if (!copies.contains("copy") || !copies.contains("copy.1"))
            return "a part of the copies"_q;
        return state.endsWith("damaged"_q) || !copies.first().endsWith('x') ? state : state + " kept"_q;
    };
    return {"DamagedRegistryChange",
            damage,
            QString(),
            {"ChangeTwo"_q},
            look,
            cLockFiles + QStringList{"*.damaged*"_q},
            true};
}

CHILD_ROLE(FlushSettings)
{
    return RunStep([&] {
        GPrefSharedFileModule module(GPathName(GetSettingsFile(arguments.at(0))), GEncoding::GetUTF16());
        module.Set("G", "K", QString(100000, QLatin1Char('n')));
        module.FlushPrefs();
    });
}

FaultScenario GetSettingsFlush()
{
    const auto prepare = [](const QString& root) {
        GPrefSharedFileModule module(GPathName(GetSettingsFile(root)), GEncoding::GetUTF16());
        module.Set("G", "K", "old"_q);
        module.FlushPrefs();
    };
    return {"SettingsFlush", prepare,    QString(), {"FlushSettings"_q, "%1"_q},
            LookAtSettings,  cLockFiles, true};
}

CHILD_ROLE(WriteProjectSettings)
{
    return RunStep([&] {
        GPrefMemoryModule settings;
        settings.Set(HopboxProject::GetPlugInGroup(), "K", "new"_q);
        HopboxProject project((GPathName(GetProject(arguments.at(0)))));
        const GResult written = project.WriteSettings(settings);
        if (!written.HasSucceeded())
            throw GCustomException(GErrorCode::cFile, written.GetReason());
    });
}

FaultScenario GetProjectSettings()
{
    const auto prepare = [](const QString& root) {
        WriteFile(root + "/a.joboptions"_q, "<< /A 1 >> setdistillerparams");
        GPrefMemoryModule settings;
        settings.Set(HopboxProject::GetPlugInGroup(), "K", "old"_q);
        HopboxProject project((GPathName(GetProject(root))));
        EXPECT_EQ(project.Create(GPathName(root + "/a.joboptions"_q), settings).GetReason(), QString());
    };
    FaultScenario scenario{"ProjectSettings", prepare,       QString(), {"WriteProjectSettings"_q, "%1"_q},
                           LookAtProject,     QStringList(), true,      false};
    // Where the removal of the owner's file itself fails.
    scenario.leftovers = QStringList{"hopbox-*.owner"_q};
    return scenario;
}

// Fields in one file and settings in another.
FaultScenario GetHopboxChange()
{
    const auto prepare = [](const QString& root) {
        GetProjectSettings().prepare(root);
        RegisterThree(root);
        EXPECT_TRUE(HopboxRegistry().ChangeEntry("Two"_q, [&root](HopboxRegistryEntry& entry) {
            entry.contextFilePath = GPathName(GetProject(root));
        }));
    };
    const auto look = [](const QString& root) {
        return LookAtRegistry(root) + QLatin1Char(' ') + LookAtProjectSetting(root, "MarkOffset");
    };
    FaultScenario scenario{
        "HopboxChange", prepare,
        "hopboxctl"_q,  {"set"_q, "Two"_q, "PDFSettings=New"_q, "--setting"_q, "MarkOffset=6"_q},
        look,           cLockFiles};
    scenario.leftovers = QStringList{"hopbox-*.owner"_q};
    return scenario;
}

// The entry goes first: the rest is nobody's then.
FaultScenario GetHopboxDeletion()
{
    const auto getFolder = [](const QString& root) {
        return GPathName(root + "/AppData/Morvane/Hopbox/Cache/Settings/Press"_q);
    };
    const auto prepare = [getFolder](const QString& root) {
        HopboxRegistryEntry entry;
        entry.contextFilePath = getFolder(root).GetChild("Project.hopbox"_q);
        EXPECT_TRUE(HopboxRegistry().AddEntry("Press"_q, entry));
        for (const QString& name : {"Project.hopbox"_q, "Icon.png"_q, "theirs"_q})
            EXPECT_TRUE(WriteFile(getFolder(root).GetChild(name).GetNativePath(), "x"));
    };
    const auto look = [getFolder](const QString& root) {
        const bool isThere =
            !QDir(getFolder(root).GetNativePath()).entryList({"Project.hopbox"_q, "Icon.png"_q}).isEmpty();
        return isThere ? "there"_q : "gone"_q;
    };
    return {"HopboxDeletion", prepare, "hopboxctl"_q, {"delete"_q, "Press"_q}, look, cLockFiles};
}

// Another process removes everything between this one's reading and its change.
CHILD_ROLE(ChangeAfterABrokenRead)
{
    const GPathName path(GetSettingsFile(arguments.at(0)));
    GPrefSharedFileModule module(path, GEncoding::GetUTF16());
    SayToParent(module.GetUnreadReason().isEmpty() ? "read" : "unread");
    return RunStep([&] {
        GPrefSharedFileModule(path, GEncoding::GetUTF16()).ChangeUnderLock([](GPrefModule& other) {
            std::vector<GBuffer> groups;
            other.GetGroupNames(groups);
            for (const GBuffer& group : groups)
                other.RemoveGroup(group);
        });
        module.ChangeUnderLock([](GPrefModule& own) { own.Set("New", "K", "v"_q); });
    });
}

FaultScenario GetChangeAfterABrokenRead()
{
    const auto prepare = [](const QString& root) {
        GPrefSharedFileModule module(GPathName(GetSettingsFile(root)), GEncoding::GetUTF16());
        for (int group = 0; group < 50; ++group)
            module.Set(GBuffer::number(group), "K", QString(2000, QLatin1Char('x')));
        module.FlushPrefs();
    };
    const auto look = [](const QString& root) {
        const GPrefSharedFileModule module(GPathName(GetSettingsFile(root)), GEncoding::GetUTF16());
        std::vector<GBuffer> groups;
        module.GetGroupNames(groups);
        QStringList names;
        for (const GBuffer& group : groups)
            names.append(QString::fromLatin1(group));
        return names.join(QLatin1Char(' '));
    };
    return {
        "ChangeAfterABrokenRead", prepare, QString(), {"ChangeAfterABrokenRead"_q, "%1"_q}, look, cLockFiles};
}

CHILD_ROLE(TakeAStep)
{
    const GPathName root(arguments.at(0));
    const QString step = arguments.at(1);
    return RunStep([&] {
        if (step == "lock"_q) {
            GLockFile(root.GetChild("a.lock"_q)).TryLock(GLockType::cWrite);
        } else if (step == "own"_q) {
            int number = 0;
            const GOwnedFile file([&] { return root.GetChild(QString::number(++number) + ".owner"_q); });
        } else {
            GDurableFile(root.GetChild("a"_q)).Commit();
        }
    });
}
