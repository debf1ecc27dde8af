#include "archive/ZipHelper.h"

#include "ZipSamples.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Sandbox.h"

#include <QDir>
#include <QProcess>

#include <gtest/gtest.h>

using Morvane::ZipNames;
using Morvane::ZipStart;

namespace
{
// Runs a line of the shell in a folder; gives its output, or fails the test.
QByteArray RunShell(const QString& folder, const QString& line)
{
    QProcess process;
    process.setWorkingDirectory(folder);
    process.setProcessChannelMode(QProcess::MergedChannels);
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral("/bin/sh"), {QStringLiteral("-c"), line});
    process.waitForFinished(60000);
    const QByteArray output = process.readAll();
    EXPECT_EQ(0, process.exitCode()) << line.toStdString() << '\n' << output.constData();
    return output;
}

QMap<QString, QByteArray> MakeTree()
{
    QByteArray noise;
    for (uint number = 1; noise.size() < 100000; number = number * 1103515245 + 12345)
        noise += static_cast<char>(number >> 16);
    return {{QStringLiteral("empty.txt"), ""},
            {QStringLiteral("text.txt"), QByteArray(200000, 'x') + "end"},
            {QStringLiteral("noise.bin"), noise},
            {QStringLiteral("hollow/"), ""},
            {QStringLiteral("folder/"), ""},
            {QStringLiteral("folder/.hidden"), "hidden"},
            {QStringLiteral("folder/\u00DCbergr\u00F6\u00DFe \u65E5\u672C.txt"), "names"}};
}

class OtherToolsTest : public testing::Test
{
protected:
    OtherToolsTest() { WriteTree(GetSource(), MakeTree()); }

    QString GetSource() const { return mSandbox.GetPath(QStringLiteral("source")); }
    QString GetArchive() const { return mSandbox.GetPath(QStringLiteral("archive.zip")); }

    // A folder that is empty at first.
    QString GetTarget() const
    {
        const QString path = mSandbox.GetPath(QStringLiteral("target"));
        QDir(path).removeRecursively();
        QDir().mkpath(path);
        return path;
    }

    Sandbox mSandbox;
};

struct Tool
{
    const char* line;  // of the shell, in the folder to pack or to fill
    bool hasFolders = true;
};
}  // namespace

TEST_F(OtherToolsTest, WhatTheyWriteReadsBackEqual)
{
    const char* const python =
        "python3 -c \"import os,zipfile as z\n"
        "with z.ZipFile('../archive.zip','w',%1) as a:\n"
        " for f,ds,ns in os.walk('.'):\n"
        "  for n in ds+ns: a.write(os.path.join(f,n))%2\"";
    const QString pythonDeflated =
        QString::fromLatin1(python).arg(QStringLiteral("z.ZIP_DEFLATED"), QString());
    const QString pythonZip64 = QString::fromLatin1(
        "python3 -c \"import os,zipfile as z\n"
        "with z.ZipFile('../archive.zip','w') as a:\n"
        " for f,ds,ns in os.walk('.'):\n"
        "  for n in ds: a.write(os.path.join(f,n))\n"
        "  for n in ns:\n"
        "   with a.open(os.path.join(f,n)[2:],'w',force_zip64=True) as o: "
        "o.write(open(os.path.join(f,n),'rb').read())\"");
    const QStringList lines = {
        QStringLiteral("zip -qr ../archive.zip ."),
        QStringLiteral("zip -qr0 ../archive.zip ."),
        QStringLiteral("zip -qr -UN=UTF8 ../archive.zip ."),
        QStringLiteral("zip -qr -fz ../archive.zip ."),
        QStringLiteral("zip -qr - . | cat >../archive.zip"),
        QStringLiteral("zip -qrP secret ../archive.zip ."),
        QStringLiteral("zip -qrP secret - . | cat >../archive.zip"),
        QStringLiteral("zip -qr ../archive.zip . && echo comment | zip -qz ../archive.zip"),
        QStringLiteral("zip -qr ../plain.zip . && (echo before; cat ../plain.zip) >../archive.zip"),
        QStringLiteral("zip -qr ../plain.zip . && (echo before; cat ../plain.zip) >../archive.zip && "
                       "zip -qA ../archive.zip"),
        QStringLiteral("7z a -tzip -bso0 ../archive.zip ."),
        QStringLiteral("7z a -tzip -bso0 -mcu=on -psecret ../archive.zip ."),
        QStringLiteral("bsdtar -cf ../archive.zip --format zip --options zip:hdrcharset=UTF-8 ."),
        QStringLiteral("bsdtar -cf - --format zip --options zip:hdrcharset=UTF-8 . | cat >../archive.zip"),
        QStringLiteral("bsdtar -cf ../archive.zip --format zip "
                       "--options zip:hdrcharset=UTF-8,zip:encryption=zipcrypt --passphrase secret ."),
        pythonDeflated,
        pythonZip64,
    };
    for (const QString& line : lines) {
        SCOPED_TRACE(line.toStdString());
        QFile::remove(GetArchive());
        RunShell(GetSource(), line);
        const QString target = GetTarget();
        LogRecorder log;
        ZipRun run;
        run.log = &log;
        EXPECT_TRUE(ZipHelper::extractFiles(GetArchive(), target, ZipPaths::Keep, QStringLiteral("secret"),
                                            ZipOnError::GoOn, 0, run));
        EXPECT_EQ(QStringList(), log.TakeErrors());
        EXPECT_EQ(MakeTree().keys(), ReadTree(target).keys());
        EXPECT_TRUE(MakeTree() == ReadTree(target));
    }
}

TEST_F(OtherToolsTest, TheyReadBackWhatPlainModeWrites)
{
    const QStringList readers = {
        QStringLiteral("unzip -q -P secret ../archive.zip"),
        QStringLiteral("7z x -bso0 -psecret ../archive.zip"),
        QStringLiteral("bsdtar --passphrase secret -xf ../archive.zip"),
        QStringLiteral("python3 -c \"import zipfile; "
                       "zipfile.ZipFile('../archive.zip').extractall(pwd=b'secret')\"")};
    for (const char* password : {"", "secret"}) {
        for (const int level : {0, 6}) {
            ASSERT_TRUE(ZipHelper::compressFolderContents(GetSource(), GetArchive(), ZipStart::Create,
                                                          QString::fromLatin1(password), level,
                                                          ZipNames::Plain));
            for (const QString& reader : readers) {
                SCOPED_TRACE(reader.toStdString() + " " + password + " " + std::to_string(level));
                const QString target = GetTarget();
                const QByteArray output = RunShell(target, reader);
                EXPECT_FALSE(output.toLower().contains("warning")) << output.constData();
                EXPECT_EQ(MakeTree().keys(), ReadTree(target).keys());
                EXPECT_TRUE(MakeTree() == ReadTree(target));
            }
        }
    }
}

// A tool that knows nothing of the name field sees "_" for what the code page lacks.
TEST_F(OtherToolsTest, SevenZipReadsArchivesWithTheNameField)
{
    const QMap<QString, QByteArray> tree = {{QStringLiteral("folder/"), ""},
                                            {QStringLiteral("folder/1\u65E5\u672C.txt"), "first"},
                                            {QStringLiteral("text.txt"), QByteArray(50000, 'x')}};
    const QMap<QString, QByteArray> seen = {{QStringLiteral("folder/"), ""},
                                            {QStringLiteral("folder/1__.txt"), "first"},
                                            {QStringLiteral("text.txt"), QByteArray(50000, 'x')}};
    WriteTree(mSandbox.GetPath(QStringLiteral("named")), tree);
    ASSERT_TRUE(ZipHelper::compressFolderContents(mSandbox.GetPath(QStringLiteral("named")), GetArchive(),
                                                  ZipStart::Create, QStringLiteral("secret"), 6,
                                                  ZipNames::NameField));
    QString target = GetTarget();
    RunShell(target, QStringLiteral("7z x -bso0 -bsp0 -psecret ../archive.zip"));
    EXPECT_EQ(seen, ReadTree(target));
    target = GetTarget();
    EXPECT_TRUE(ZipHelper::extractFiles(GetArchive(), target, ZipPaths::Keep, QStringLiteral("secret"),
                                        ZipOnError::Stop, 0));
    EXPECT_EQ(tree, ReadTree(target));
}
