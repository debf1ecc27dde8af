#pragma once

#include "foundation/system/GLockByFile.h"

#include <QByteArray>

#include <optional>

// The file by which the script finds the helper: the port, and the secret that only this user can read. Held
// by one helper of a user at a time; the file goes with it. For the main thread. Operations raise a
// GException where the folder or the file can't be made.
class MeetingPlace
{
public:
    MeetingPlace();
    ~MeetingPlace();
    MeetingPlace(const MeetingPlace&) = delete;
    MeetingPlace& operator=(const MeetingPlace&) = delete;

    // Takes the place. False when another helper has it.
    [[nodiscard]] bool Enter();

    // Says where the helper listens, to this user alone.
    void Announce(uint16_t port);

    // 64 hexadecimal digits, made anew for each helper.
    const QByteArray& GetSecret() const { return mSecret; }

private:
    GPathName mFolder;
    GPathName mFile;
    std::optional<GLockByFile> mLock;
    QByteArray mSecret;
};
