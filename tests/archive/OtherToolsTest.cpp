#include "ZipSamples.h"

using Morvane::ZipNames;
using Morvane::ZipStart;

static QMap<QString, QByteArray> MakeTree()
{
    QByteArray noise;
    for (uint number = 1; noise.size() < 100000; number = number * 1103515245 + 12345)
        noise += static_cast<char>(number >> 16);
    return {{"empty.txt"_q, ""},
            {"text.txt"_q, QByteArray(200000, 'x') + "end"},
            {"noise.bin"_q, noise},
            {"hollow/"_q, ""},
            {"folder/"_q, ""},
            {"folder/.hidden"_q, "hidden"},
            {"folder/\u00DCbergr\u00F6\u00DFe \u65E5\u672C.txt"_q, "names"}};
}

class OtherToolsTest : public ArchiveTest
{
protected:
    OtherToolsTest() { WriteTree(GetSource(), MakeTree()); }

    QString GetSource() const { return mSandbox.GetPath("source"_q); }

    void EmptyTarget() const
    {
        QDir(mTarget).removeRecursively();
        QDir().mkpath(mTarget);
    }
};

TEST_F(OtherToolsTest, WhatTheyWriteReadsBackEqual)
{
    const char* const python =
        "python3 -c \"import os,zipfile as z\n"
        "with z.ZipFile('../archive.zip','w',%1) as a:\n"
        " for f,ds,ns in os.walk('.'):\n"
        "  for n in ds+ns: a.write(os.path.join(f,n))%2\"";
    const QString pythonDeflated = QString::fromLatin1(python).arg("z.ZIP_DEFLATED"_q, QString());
    const QString pythonZip64 = QString::fromLatin1(
        "python3 -c \"import os,zipfile as z\n"
        "with z.ZipFile('../archive.zip','w') as a:\n"
        " for f,ds,ns in os.walk('.'):\n"
        "  for n in ds: a.write(os.path.join(f,n))\n"
        "  for n in ns:\n"
        "   with a.open(os.path.join(f,n)[2:],'w',force_zip64=True) as o: "
        "o.write(open(os.path.join(f,n),'rb').read())\"");
    const QStringList lines = {
        "zip -qr ../archive.zip ."_q,
        "zip -qr0 ../archive.zip ."_q,
        "zip -qr -UN=UTF8 ../archive.zip ."_q,
        "zip -qr -fz ../archive.zip ."_q,
        "zip -qr - . | cat >../archive.zip"_q,
        "zip -qrP secret ../archive.zip ."_q,
        "zip -qrP secret - . | cat >../archive.zip"_q,
        "zip -qr ../archive.zip . && echo comment | zip -qz ../archive.zip"_q,
        "zip -qr ../plain.zip . && (echo before; cat ../plain.zip) >../archive.zip"_q,
        "zip -qr ../plain.zip . && (echo before; cat ../plain.zip) >../archive.zip && "
        "zip -qA ../archive.zip"_q,
        "7z a -tzip -bso0 ../archive.zip ."_q,
        "7z a -tzip -bso0 -mcu=on -psecret ../archive.zip ."_q,
        "bsdtar -cf ../archive.zip --format zip --options zip:hdrcharset=UTF-8 ."_q,
        "bsdtar -cf - --format zip --options zip:hdrcharset=UTF-8 . | cat >../archive.zip"_q,
        "bsdtar -cf ../archive.zip --format zip "
        "--options zip:hdrcharset=UTF-8,zip:encryption=zipcrypt --passphrase secret ."_q,
        pythonDeflated,
        pythonZip64,
    };
    for (const QString& line : lines) {
        SCOPED_TRACE(line.toStdString());
        QFile::remove(mArchive);
        RunShell(GetSource(), line);
        EmptyTarget();
        EXPECT_TRUE(Extract(ZipOnError::Stop, ZipPaths::Keep, 0, "secret"_q));
        EXPECT_EQ(QStringList(), mLog.TakeErrors());
        EXPECT_EQ(MakeTree().keys(), ReadTree(mTarget).keys());
        EXPECT_TRUE(MakeTree() == ReadTree(mTarget));
    }
}

// One of 128 entries passes the first look at a password that is wrong; of 400, some do.
TEST_F(OtherToolsTest, PasswordsThatTheyWriteInUtf8OpenTheirArchives)
{
    const QString folder = mSandbox.GetPath("many"_q);
    for (int number = 0; number < 400; ++number)
        WriteFile(folder + "/%1"_q.arg(number), QByteArray(300, 'x') + QByteArray::number(number));
    const QMap<QString, QByteArray> tree = ReadTree(folder);
    for (const QString& password : {"p\u00E4ssw\u00F6rd"_q, "\u043F\u0430\u0440\u043E\u043B\u044C"_q}) {
        for (const QString& line :
             {"zip -q0rP '%1' ../archive.zip ."_q,
              "bsdtar -cf ../archive.zip --format zip --options zip:encryption=zipcrypt "
              "--passphrase '%1' *"_q}) {
            QFile::remove(mArchive);
            RunShell(folder, line.arg(password));
            EmptyTarget();
            qint64 last = 0;
            mRun.progress = [&last](qint64 done, qint64) { return last = done, true; };
            EXPECT_TRUE(Extract(ZipOnError::Stop, ZipPaths::Keep, 0, password));
            EXPECT_EQ(QStringList(), mLog.TakeErrors());
            EXPECT_TRUE(tree == ReadTree(mTarget));
            EXPECT_EQ(400 * 300 + 1090, last) << "nothing counts twice";
            EXPECT_FALSE(
                Extract(ZipOnError::Stop, ZipPaths::Keep, 0, QString(password.size(), QLatin1Char('?'))));
            const QString error = mLog.TakeErrors().value(0);
            EXPECT_TRUE(error.endsWith(QLatin1String("the password is wrong")) ||
                        error.endsWith(QLatin1String("the password may be wrong")))
                << error.toStdString();
        }
    }
}

TEST_F(OtherToolsTest, TheyReadBackWhatPlainModeWrites)
{
    const QStringList readers = {"unzip -q -P secret ../archive.zip"_q,
                                 "7z x -bso0 -psecret ../archive.zip"_q,
                                 "bsdtar --passphrase secret -xf ../archive.zip"_q,
                                 "python3 -c \"import zipfile; "
                                 "zipfile.ZipFile('../archive.zip').extractall(pwd=b'secret')\""_q};
    for (const char* password : {"", "secret"}) {
        for (const int level : {0, 6}) {
            ASSERT_TRUE(ZipHelper::compressFolderContents(GetSource(), mArchive, ZipStart::Create,
                                                          QString::fromLatin1(password), level,
                                                          ZipNames::Plain));
            for (const QString& reader : readers) {
                SCOPED_TRACE(reader.toStdString() + " " + password + " " + std::to_string(level));
                EmptyTarget();
                const QByteArray output = RunShell(mTarget, reader);
                EXPECT_FALSE(output.toLower().contains("warning")) << output.constData();
                EXPECT_EQ(MakeTree().keys(), ReadTree(mTarget).keys());
                EXPECT_TRUE(MakeTree() == ReadTree(mTarget));
            }
        }
    }
}

// A tool that knows nothing of the name field sees "_" for what the code page lacks.
TEST_F(OtherToolsTest, SevenZipReadsArchivesWithTheNameField)
{
    const QMap<QString, QByteArray> tree = {
        {"folder/"_q, ""}, {"folder/1\u65E5\u672C.txt"_q, "first"}, {"text.txt"_q, QByteArray(50000, 'x')}};
    const QMap<QString, QByteArray> seen = {
        {"folder/"_q, ""}, {"folder/1__.txt"_q, "first"}, {"text.txt"_q, QByteArray(50000, 'x')}};
    WriteTree(mSandbox.GetPath("named"_q), tree);
    ASSERT_TRUE(ZipHelper::compressFolderContents(mSandbox.GetPath("named"_q), mArchive, ZipStart::Create,
                                                  "secret"_q, 6, ZipNames::NameField));
    EmptyTarget();
    RunShell(mTarget, "7z x -bso0 -bsp0 -psecret ../archive.zip"_q);
    EXPECT_EQ(seen, ReadTree(mTarget));
    EmptyTarget();
    EXPECT_TRUE(Extract(ZipOnError::Stop, ZipPaths::Keep, 0, "secret"_q));
    EXPECT_EQ(tree, ReadTree(mTarget));
}
