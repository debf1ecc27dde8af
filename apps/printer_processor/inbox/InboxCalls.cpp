#include "apps/printer_processor/inbox/InboxCalls.h"

#include <QFile>

bool InboxCalls::WriteAll(QFile& file, const QByteArray& bytes)
{
    for (int at = 0; at < bytes.size();) {
        const qint64 written = file.write(bytes.constData() + at, bytes.size() - at);
        if (written <= 0)
            return false;
        at += static_cast<int>(written);
    }
    return true;
}
