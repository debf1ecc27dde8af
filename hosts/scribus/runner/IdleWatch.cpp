#include "hosts/scribus/runner/IdleWatch.h"

#include <QByteArrayList>

// A dialog that waits still draws its cursor now and then.
constexpr qint64 cTicksOfNothing = 5;

static QByteArray Read(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool IdleWatch::HasWaitedFor(int seconds)
{
    const QString folder = QStringLiteral("/proc/%1/").arg(mProcessId);
    // "pid (name) state …"; the name may hold blanks and parentheses. The times are the 12th and 13th behind
    // the state's place.
    const QByteArray status = Read(folder + QStringLiteral("stat"));
    const QByteArrayList fields = status.mid(status.lastIndexOf(')') + 2).split(' ');
    constexpr int cUserTime = 11;
    constexpr int cSystemTime = 12;
    const qint64 ticks = fields.value(cUserTime).toLongLong() + fields.value(cSystemTime).toLongLong();
    const bool hasHelper =
        !Read(folder + QStringLiteral("task/%1/children").arg(mProcessId)).trimmed().isEmpty();
    if (mTicks < 0 || fields.value(0) != "S" || hasHelper || ticks > mTicks + cTicksOfNothing) {
        mTicks = ticks;
        mSince.restart();
    }
    return mSince.hasExpired(qint64(seconds) * 1000);
}
