#include "archive/mac/AppleDouble.h"

#include "foundation/core/SharedFile.h"
#include "foundation/files/CompanionFile.h"
#include "foundation/trace/GTrace.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtEndian>

#include <algorithm>

namespace Morvane
{
namespace
{
constexpr quint32 cMagic = 0x00051607;
constexpr quint32 cVersion = 0x00020000;
constexpr qint64 cFillerSize = 16;
constexpr quint32 cFinderInfoID = 9;
constexpr quint32 cLeastFinderInfo = 8;
constexpr qint64 cMostFinderInfo = 1 << 20;
constexpr int cTypeOffset = 0;
constexpr int cTypeSize = 4;
constexpr int cCreatorOffset = 4;
constexpr int cCreatorSize = 8;  // four characters, and the Finder flags unless a zero byte comes first

const QLatin1String cMacOsxFolder("/__MACOSX/");

// A failed step of reading: its text goes to the trace.
struct Failure
{
    const char* text;
};

void logFailure(const char* text)
{
    GTrace::Error(QStringLiteral("Morvane::AppleDouble::getMacFileType"), QLatin1String(text));
}

class Reader
{
public:
    explicit Reader(QIODevice* file) : mFile(*file) {}

    MacFileInfo read()
    {
        if (!readNumber(&mMagic) || mMagic != cMagic)
            throw Failure{"Can't read magic number from appledouble file"};
        if (!readNumber(&mVersion) || mVersion != cVersion)
            throw Failure{"Invalid version of appledouble file"};
        if (mFile.read(cFillerSize).size() < cFillerSize)
            throw Failure{"Invalid filler in the appledouble file"};
        quint16 entries = 0;
        if (!readNumber(&entries))
            throw Failure{"Can't read entries number in the appledouble file"};
        for (quint16 entry = 0; entry < entries; ++entry)
            readEntry();
        return getInfo();
    }

private:
    template <typename Number>
    bool readNumber(Number* number)
    {
        const QByteArray bytes = mFile.read(sizeof(Number));
        if (bytes.size() < static_cast<int>(sizeof(Number)))
            return false;
        *number = qFromBigEndian<Number>(bytes.constData());
        return true;
    }

    void readEntry()
    {
        quint32 id = 0;
        quint32 offset = 0;
        quint32 length = 0;
        if (!readNumber(&id))
            throw Failure{"Can't read version number of the entry"};
        if (!readNumber(&offset))
            throw Failure{"Can't read offset of the entry"};
        if (!readNumber(&length))
            throw Failure{"Can't read version number of the entry"};
        if (id == cFinderInfoID && length >= cLeastFinderInfo) {
            mFinderOffset = offset;
            mFinderLength = length;
        }
    }

    // The last Finder entry counts, so that one is read, however many a file announces.
    MacFileInfo getInfo()
    {
        MacFileInfo info;
        if (mFinderLength == 0 || mFinderOffset > mFile.size() || !mFile.seek(mFinderOffset))
            return info;
        info.finderInfo =
            mFile.read(std::min({mFinderLength, mFile.size() - mFinderOffset, cMostFinderInfo}));
        if (info.finderInfo.size() < static_cast<int>(cLeastFinderInfo))
            return {};
        info.type = getText(info.finderInfo.mid(cTypeOffset, cTypeSize));
        info.creator = getText(info.finderInfo.mid(cCreatorOffset, cCreatorSize));
        return info;
    }

    static QString getText(const QByteArray& bytes)
    {
        const int zero = bytes.indexOf('\0');
        return QString::fromUtf8(zero < 0 ? bytes : bytes.left(zero));
    }

    QIODevice& mFile;
    quint32 mMagic = 0;
    quint32 mVersion = 0;
    qint64 mFinderOffset = 0;
    qint64 mFinderLength = 0;
};

QString getIfFile(const QString& path)
{
    return QFileInfo(path).isFile() ? path : QString();
}
}  // namespace

bool AppleDouble::getMacFileType(const QString& path, MacFileInfo* info)
{
    QFile file(path);
    GString reason;
    const FileOpening opening = OpenSharedForReading(file, cNoLargestFile, reason);
    if (opening == FileOpening::cOpen)
        return getMacFileType(&file, info);
    logFailure("Can't open file for reading");
    if (opening == FileOpening::cRefused)
        GTrace::Error(QStringLiteral("Morvane::AppleDouble::getMacFileType"),
                      QStringLiteral("\"%1\": %2").arg(path, reason));
    return false;
}

bool AppleDouble::getMacFileType(QIODevice* file, MacFileInfo* info)
{
    try {
        *info = Reader(file).read();
        return true;
    } catch (const Failure& failure) {
        logFailure(failure.text);
        return false;
    }
}

bool AppleDouble::isAppleDoubleName(const QString& path)
{
    return isCompanion(path);
}

QString AppleDouble::getDataFile(const QString& appleDouble)
{
    const QFileInfo file(appleDouble);
    if (!isAppleDoubleName(appleDouble) || !file.isFile())
        return {};
    const QString beside = QDir(file.path()).filePath(file.fileName().mid(2));
    if (QFileInfo(beside).isFile() || !isInMacOsxFolder(appleDouble))
        return getIfFile(beside);
    QString outside = beside;
    outside.replace(outside.lastIndexOf(cMacOsxFolder), cMacOsxFolder.size(), QLatin1String("/"));
    return getIfFile(outside);
}

QString AppleDouble::getAppleDouble(const QString& dataFile)
{
    const QFileInfo file(dataFile);
    const QString path = file.absoluteFilePath();
    const QString beside = getCompanionPath(path);
    if (beside.isEmpty() || QFileInfo(beside).isFile())
        return beside;
    for (int slash = beside.lastIndexOf(QLatin1Char('/')); slash >= 0;
         slash = slash > 0 ? beside.lastIndexOf(QLatin1Char('/'), slash - 1) : -1) {
        const QString candidate = beside.left(slash) + cMacOsxFolder + beside.mid(slash + 1);
        if (QFileInfo(candidate).isFile())
            return candidate;
    }
    return {};
}

bool AppleDouble::isInMacOsxFolder(const QString& path)
{
    return path.contains(cMacOsxFolder);
}
}  // namespace Morvane
