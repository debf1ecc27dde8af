#include "Scenarios.h"
#include "archive/ZipHelper.h"
#include "tests/support/ChildProcess.h"
#include "tests/support/Test.h"

using Morvane::ZipArchiver;
using Morvane::ZipEntry;
using Morvane::ZipNames;
using Morvane::ZipStart;

namespace
{
QString GetArchive(const QString& root)
{
    return root + "/kept.zip"_q;
}

int Compress(const QString& root, ZipStart start)
{
    ErrorPrinter log;
    ZipRun run;
    run.log = &log;
    return ZipHelper::compressItem(root + "/tree"_q, GetArchive(root), start, QString(), 6, QString(),
                                   ZipNames::NameField, run)
               ? 0
               : 1;
}

// Large enough that the archive is written in several steps.
void MakeTree(const QString& root)
{
    QByteArray noise;
    for (uint number = 1; noise.size() < 300000; number = number * 1103515245 + 12345)
        noise += static_cast<char>(number >> 16);
    WriteFile(root + "/tree/noise"_q, noise);
    WriteFile(root + "/tree/folder/text"_q, QByteArray(1000, 'x'));
    WriteFile(root + "/tree/folder/deep/text"_q, "deep");
}

void MakeTreeAndArchive(const QString& root)
{
    WriteFile(root + "/old.txt"_q, QByteArray(300000, 'o'));
    EXPECT_TRUE(ZipHelper::compressItem(root + "/old.txt"_q, GetArchive(root), ZipStart::Create, QString(), 0,
                                        QString(), ZipNames::Plain));
    MakeTree(root);
}

// All that comes out of the archive again.
QString LookAtArchive(const QString& root)
{
    const Sandbox target;
    if (!ZipHelper::extractFiles(GetArchive(root), target.GetPath(), ZipPaths::Keep, QString(),
                                 ZipOnError::Stop, 0))
        return "damaged"_q;
    QStringList lines;
    const QMap<QString, QByteArray> tree = ReadTree(target.GetPath());
    for (auto item = tree.begin(); item != tree.end(); ++item)
        lines.append("%1 %2 %3"_q.arg(item.key()).arg(item->size()).arg(qHash(*item, 0)));
    return lines.join(QLatin1Char('\n'));
}
}  // namespace

CHILD_ROLE(CreateArchive)
{
    return Compress(arguments.at(0), ZipStart::Create);
}

CHILD_ROLE(AddToArchive)
{
    return Compress(arguments.at(0), ZipStart::Append);
}

CHILD_ROLE(ExtractArchive)
{
    const QString root = arguments.at(0);
    ErrorPrinter log;
    ZipRun run;
    run.log = &log;
    return ZipHelper::extractFiles(GetArchive(root), root + "/out"_q, ZipPaths::Keep, QString(),
                                   ZipOnError::Stop, 0, run)
               ? 0
               : 1;
}

// Waits in the middle of the first file.
CHILD_ROLE(ExtractInTwoSteps)
{
    const QString root = arguments.at(0);
    bool hasWaited = false;
    ZipRun run;
    run.progress = [&](qint64 done, qint64) {
        if (done > 0 && !hasWaited) {
            hasWaited = true;
            SayToParent("half");
            HearFromParent();
        }
        return true;
    };
    return ZipHelper::extractFiles(GetArchive(root), root + "/out"_q, ZipPaths::Keep, QString(),
                                   ZipOnError::Stop, 0, run)
               ? 0
               : 1;
}

FaultScenario GetArchiveCreation()
{
    return {"ArchiveCreation", MakeTreeAndArchive, QString(), {"CreateArchive"_q, "%1"_q}, LookAtArchive};
}

FaultScenario GetArchiveAddition()
{
    return {"ArchiveAddition",
            MakeTreeAndArchive,
            QString(),
            {"AddToArchive"_q, "%1"_q},
            LookAtArchive,
            {},
            false};
}

// Several files come out of an archive; each is old or new, and what is new stays when a later one fails.
FaultScenario GetExtraction()
{
    const auto prepare = [](const QString& root) {
        const QString archive = GetArchive(root);
        MakeTree(root);
        EXPECT_TRUE(ZipHelper::compressFolderContents(root + "/tree"_q, archive, ZipStart::Create, QString(),
                                                      6, ZipNames::Plain));
        WriteFile(root + "/out/noise"_q, "old");
        WriteFile(root + "/out/folder/._text"_q, "of the user");
    };
    const auto look = [](const QString& root) {
        QMap<QString, QByteArray> tree = ReadTree(root + "/out"_q);
        if (tree.take("folder/._text"_q) != "of the user")
            return "without what was there"_q;
        const QMap<QString, QByteArray> whole = ReadTree(root + "/tree"_q);
        for (auto item = tree.begin(); item != tree.end(); ++item) {
            if (!whole.contains(item.key()) || (*item != whole.value(item.key()) && *item != "old"))
                return "a part of "_q + item.key();
        }
        return tree == whole ? "new"_q : "old"_q;
    };
    return {"Extraction", prepare,
            QString(),    {"ExtractArchive"_q, "%1"_q},
            look,         {"out/*"_q, "out/*/"_q, "out/*/*"_q, "out/*/*/"_q, "out/*/*/*"_q}};
}
