#include "Scenarios.h"
#include "foundation/files/FileHandler.h"
#include "foundation/system/GDurableFile.h"
#include "foundation/system/GFileSystemBase.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Test.h"

#include <QDomDocument>

#include <cstdio>

namespace
{
// Every folder counts as another volume; a failing call is not tried twenty times a second apart.
class Copier : public Morvane::FileHandler
{
public:
    Copier()
    {
        setLogInterface(&mPrinter);
        setRetryPauses({std::chrono::milliseconds(1), std::chrono::milliseconds(1)});
    }
    bool checkSameVolume(const QString& one, const QString& other) override
    {
        return QFileInfo(one).absolutePath() == QFileInfo(other).absolutePath();
    }

private:
    ErrorPrinter mPrinter;
};

const bool cHasLinks = QDir::separator() == QLatin1Char('/');

void MakeFolder(const QString& root)
{
    WriteFile(root + "/from/a"_q, "first");
    WriteFile(root + "/from/sub/b"_q, QByteArray(100000, 'b'));
    WriteFile(root + "/from/sub/._b"_q, "companion");
    if (cHasLinks)
        QFile::link("../a"_q, root + "/from/sub/link"_q);
    WriteFile(root + "/from/sub/._link"_q, "of the link");
    QDir().mkpath(root + "/other"_q);
}

bool IsWhole(const QString& folder)
{
    const QMap<QString, QByteArray> tree = ReadTree(folder);
    return tree.size() == (cHasLinks ? 6 : 5) && tree["a"_q] == "first" && tree["sub/b"_q].size() == 100000 &&
           tree["sub/._b"_q] == "companion" && tree["sub/._link"_q] == "of the link" &&
           QFileInfo(folder + "/sub/link"_q).isSymLink() == cHasLinks;
}

QString LookAtCopy(const QString& root)
{
    const bool isCopied = QFileInfo::exists(root + "/other/to"_q);
    const bool areWhole = IsWhole(root + "/from"_q) && (!isCopied || IsWhole(root + "/other/to"_q));
    return !areWhole ? "a part"_q : isCopied ? "copied"_q : "not copied"_q;
}

// Where the copy is whole and the source resists removal, the move has failed, and nothing is lost.
QString LookAtMove(const QString& root)
{
    if (QFileInfo::exists(root + "/other/to"_q))
        return IsWhole(root + "/other/to"_q) ? "moved"_q : "a part"_q;
    return IsWhole(root + "/from"_q) ? "not moved"_q : "a part"_q;
}
}  // namespace

CHILD_ROLE(CopyFolder)
{
    return Copier().copyFolder(arguments.at(0) + "/from"_q, arguments.at(0) + "/other/to"_q) ? 0 : 1;
}

CHILD_ROLE(CopyToFile)
{
    try {
        const QString root = arguments.at(0);
        GFileSystemBase::CopyAndRenameFile(GPathName(root + "/a"_q), GPathName(root + arguments.at(1)),
                                           GFileSystemBase::cReplaceExisting * arguments.at(2).toUInt());
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}

FaultScenario GetFileCopy()
{
    const auto prepare = [](const QString& root) {
        WriteFile(root + "/a"_q, QByteArray(1000000, 'a'));
        WriteFile(root + "/b"_q, "old");
    };
    const auto look = [](const QString& root) {
        const QByteArray copy = ReadFile(root + "/b"_q);
        return copy == "old" ? "old"_q : copy == ReadFile(root + "/a"_q) ? "new"_q : "a part"_q;
    };
    FaultScenario scenario{"FileCopy", prepare, QString(), {"CopyToFile"_q, "%1"_q, "/b"_q, "1"_q}, look};
    // Where its own removal fails.
    scenario.leftovers = QStringList{"b.*.new"_q};
    return scenario;
}

FaultScenario GetFileCopyToAFreeName()
{
    FaultScenario scenario = GetFileCopy();
    scenario.name = "FileCopyToAFreeName";
    scenario.arguments = QStringList{"CopyToFile"_q, "%1"_q, "/c"_q, "0"_q};
    scenario.look = [](const QString& root) {
        return QFile::exists(root + "/c"_q) ? "copied"_q : "not copied"_q;
    };
    scenario.isRepeatable = false;
    scenario.failsToOld = true;
    scenario.leftovers.clear();
    return scenario;
}

CHILD_ROLE(SaveXml)
{
    QDomDocument document;
    document.setContent(QByteArray("<table a='new' z='2' y='3'/>"));
    return Copier().saveXmlNodeKeepingAttributesOrder(document, arguments.at(0) + "/a.xml"_q) ? 0 : 1;
}

// The order of the attributes counts as well.
FaultScenario GetXmlSave()
{
    const auto prepare = [](const QString& root) {
        WriteFile(root + "/a.xml"_q, "<table z='2'\ny='3' a='old'/>" + QByteArray(40000, '\n'));
    };
    const auto look = [](const QString& root) {
        const QByteArray text = ReadFile(root + "/a.xml"_q);
        return text.contains("<table z='2'\ny='3' a='old'/>")        ? "old"_q
               : text.contains("<table z=\"2\" y=\"3\" a=\"new\"/>") ? "new"_q
                                                                     : "a part"_q;
    };
    return {"XmlSave", prepare, QString(), {"SaveXml"_q, "%1"_q}, look};
}

// Asks everything about a folder; writes down the answers when there were all of them.
CHILD_ROLE(AskFolder)
{
    const QString root = arguments.at(0);
    const QString folder = root + "/from"_q;
    Copier files;
    qint64 count[6] = {};
    QStringList all, found;
    QString first, deep, wild;
    const bool areAnswered =
        files.countFolderItems(folder, &count[0]) && files.getFileCount(folder, &count[1]) &&
        files.getTopLevelFileCount(folder, &count[2]) && files.getByteCount(folder, &count[3]) &&
        files.getDotUnderscoreByteCount(folder, &count[4]) && files.getFileList(folder, &all) &&
        files.findFile(folder, "link"_q, &first) && files.findFileDepthFirst(folder, "a"_q, &deep) &&
        files.findFileByWildcard(folder, "lin*"_q, &wild) &&
        files.findFilesByWildcard(folder, "?"_q, &found) && files.setRWPermissions(folder);
    if (!areAnswered)
        return 1;
    QStringList answers = all + found + QStringList{first, deep, wild};
    for (const qint64 number : count)
        answers.append(QString::number(number));
    const GResult written =
        GDurableFile::Replace(root + "/answers"_q, answers.join(QLatin1Char('\n')).toUtf8());
    std::fprintf(stderr, "%s", qPrintable(written.GetReason()));
    return written.HasSucceeded() ? 0 : 1;
}

FaultScenario GetFolderQueries()
{
    // Nobody loses the rights that he had.
    const auto look = [](const QString& root) {
        const bool isReadable = QFile::permissions(root + "/from/a"_q) & QFile::ReadOther;
        return isReadable ? QString::fromUtf8(ReadFile(root + "/answers"_q)) : "a part of the rights"_q;
    };
    return {"FolderQueries", MakeFolder, QString(), {"AskFolder"_q, "%1"_q}, look};
}

FaultScenario GetFolderCopyAcrossVolumes()
{
    return {
        "FolderCopyAcrossVolumes", MakeFolder, QString(), {"CopyFolder"_q, "%1"_q}, LookAtCopy, {}, false};
}

CHILD_ROLE(RenameFolder)
{
    return Copier().renameFolder(arguments.at(0) + "/from"_q, arguments.at(0) + "/other/to"_q) ? 0 : 1;
}

CHILD_ROLE(RenameFile)
{
    return Copier().renameFile(arguments.at(0) + "/from/sub/b"_q, arguments.at(0) + "/other/b"_q) ? 0 : 1;
}

FaultScenario GetFileRenameAcrossVolumes()
{
    const auto look = [](const QString& root) {
        const auto hasBoth = [&root](const char* folder) {
            return ReadFile(root + QLatin1String(folder) + "/b"_q).size() == 100000 &&
                   ReadFile(root + QLatin1String(folder) + "/._b"_q) == "companion";
        };
        const bool isMoved = QFileInfo::exists(root + "/other/b"_q);
        return !hasBoth(isMoved ? "/other" : "/from/sub") ? "a part"_q : isMoved ? "moved"_q : "not moved"_q;
    };
    return {"FileRenameAcrossVolumes", MakeFolder, QString(), {"RenameFile"_q, "%1"_q}, look, {}, false};
}

FaultScenario GetFolderRenameAcrossVolumes()
{
    // The source, which may be left whole, in part, or under the hidden name of a folder that is being
    // removed. It is the user's own: no later run takes it away.
    return {"FolderRenameAcrossVolumes",    MakeFolder, QString(), {"RenameFolder"_q, "%1"_q}, LookAtMove,
            {"from*"_q, ".~#~from_del*"_q}, false};
}
