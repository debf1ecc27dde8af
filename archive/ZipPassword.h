#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

namespace Morvane
{
// A password as the bytes that protect an archive. The format does not tell their encoding: this layer writes
// Latin-1, and most other programs write UTF-8.
namespace ZipPassword
{
// The forms in which to try a password on an archive, in this order: Latin-1, if that has all of its
// characters, and UTF-8, if its bytes differ from those.
QVector<QByteArray> getForms(const QString& password);

// The form in which a password is written. False, and the reason, for a password with characters that Latin-1
// does not have.
[[nodiscard]] bool encode(const QString& password, QByteArray& bytes, QString& reason);
}  // namespace ZipPassword
}  // namespace Morvane
