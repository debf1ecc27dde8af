#include "hosts/indesign/bridge/MeetingPlace.h"

#include "foundation/system/GDurableFile.h"
#include "foundation/system/GFileSystemBase.h"
#include "foundation/system/GSystemError.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QRandomGenerator>

#include <array>

namespace
{
QByteArray MakeSecret()
{
    std::array<quint32, 8> numbers{};
    QRandomGenerator::system()->generate(numbers.begin(), numbers.end());
    return QByteArray(reinterpret_cast<const char*>(numbers.data()), sizeof numbers).toHex();
}
}  // namespace

MeetingPlace::MeetingPlace()
    : mFolder(GFileSystemBase::GetSpecialPath(GSpecialPath::cUserPreferences)
                  .GetChild(QStringLiteral("Hopbox Bridge"))),
      mFile(mFolder.GetChild(QStringLiteral("bridge.json"))),
      mSecret(MakeSecret())
{
}

MeetingPlace::~MeetingPlace()
{
    if (mLock)
        GFileSystemBase::DropFile(mFile);
}

bool MeetingPlace::Enter()
{
    GFileSystemBase::CreateFolder(mFolder);
    mLock.emplace(mFolder.GetChild(QStringLiteral("bridge.lock")), GLockType::cWrite, GLockWait::cTryOnce);
    if (!mLock->IsLocked())
        mLock.reset();
    return mLock.has_value();
}

// A file that is there would keep its rights, whoever made it.
void MeetingPlace::Announce(uint16_t port)
{
    if (!GFileSystemBase::TryToRemoveFile(mFile))
        RaiseFileError(QStringLiteral("The file \"%1\" can't be replaced"), mFile, GetLastSystemError());
    const QJsonObject place{{QStringLiteral("version"), 1},
                            {QStringLiteral("port"), port},
                            {QStringLiteral("secret"), QString::fromLatin1(mSecret)}};
    const QByteArray text = QJsonDocument(place).toJson(QJsonDocument::Compact) + '\n';
    GDurableFile file(mFile, GDurableFile::Access::cOwnerOnly);
    file.Write(text.constData(), text.size());
    file.Commit();
}
