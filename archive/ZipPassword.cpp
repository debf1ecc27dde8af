#include "archive/ZipPassword.h"

#include <algorithm>

namespace Morvane
{
static bool isLatin(const QString& password)
{
    return std::all_of(password.begin(), password.end(),
                       [](QChar character) { return character.unicode() <= 0xff; });
}

QVector<QByteArray> ZipPassword::getForms(const QString& password)
{
    QVector<QByteArray> forms;
    if (isLatin(password))
        forms.append(password.toLatin1());
    if (!forms.contains(password.toUtf8()))
        forms.append(password.toUtf8());
    return forms;
}

bool ZipPassword::encode(const QString& password, QByteArray& bytes, QString& reason)
{
    if (isLatin(password)) {
        bytes = password.toLatin1();
        return true;
    }
    reason = QStringLiteral("the password has characters that an archive can't keep (others than Latin-1)");
    return false;
}
}  // namespace Morvane
