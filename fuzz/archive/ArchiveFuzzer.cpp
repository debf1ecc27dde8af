#include "archive/ZipArchive.h"

#include <QBuffer>
#include <QDir>
#include <QTemporaryDir>

#include <cstdlib>

// Reads the input as an archive, into memory and into a folder whose neighbourhood has to stay empty.
namespace
{
constexpr qint64 cLimit = 1024 * 1024;
constexpr int cMostEntries = 64;

void ExtractAll(const QByteArray& bytes, const QString& target)
{
    auto device = std::make_unique<QBuffer>();
    device->setData(bytes);
    Morvane::ZipArchive archive(std::move(device), QStringLiteral("fuzz.zip"));
    Morvane::ZipLimits limits;
    limits.totalBytes = cLimit;
    limits.entryCount = cMostEntries;
    archive.setLimits(limits);
    archive.setMemoryLimit(cLimit);
    for (archive.StartIterate(); !archive.AtEnd() && archive.GetCurrentIndex() < cMostEntries;
         archive.Next()) {
        const QByteArray content = archive.ExtractCurrentToMemory(QStringLiteral("secret"));
        const bool isExtracted = archive.ExtractCurrentFile(target, QStringLiteral("secret"), 0);
        if (isExtracted && !archive.getCurrentEntry().isFolder() && content.isNull())
            std::abort();
    }
}
}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    static const QTemporaryDir root;
    const QString target = root.filePath(QStringLiteral("target"));
    ExtractAll(QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(size)), target);
    const QDir::Filters everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    const QStringList names = QDir(root.path()).entryList(everything);
    if (names.size() > 1 || (names.size() == 1 && names.first() != QLatin1String("target")))
        std::abort();
    if (QDir(target).exists() && !QDir(target).removeRecursively())
        std::abort();
    return 0;
}
