#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

namespace Morvane
{
// A password in the bytes that archives are protected with. The format has no word for their encoding: this
// layer writes Latin-1, and other programs mostly UTF-8.
namespace ZipPassword
{
// The forms in which to try a password on an archive, in this order: Latin-1, where that has all of its
// characters, and UTF-8, where that is something else.
QVector<QByteArray> getForms(const QString& password);

// The form in which a password is written. False, and the reason, for one that Latin-1 lacks characters of.
[[nodiscard]] bool encode(const QString& password, QByteArray& bytes, QString& reason);
}  // namespace ZipPassword
}  // namespace Morvane
