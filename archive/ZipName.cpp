#include "archive/ZipName.h"

#include "foundation/core/GEncoding.h"

#include <QTextCodec>
#include <QtEndian>

namespace Morvane
{
namespace
{
const QByteArray cFieldID = QByteArrayLiteral("\xD3\xD7");
const QByteArray cByteOrderMark = QByteArrayLiteral("\xEF\xBB\xBF");
constexpr int cLengthSize = 4;
constexpr int cHeaderSize = 2 + cLengthSize;

QString withSlashes(QString name)
{
    return name.replace(QLatin1Char('\\'), QLatin1Char('/'));
}

bool isUtf8(const QByteArray& bytes, QString& text)
{
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    text = QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
    return state.invalidChars == 0 && state.remainingChars == 0;
}
}  // namespace

QByteArray ZipName::encodeZipName(const QString& name)
{
    return GEncoding::GetOEM()->Encode(withSlashes(name), '_');
}

QString ZipName::decodeZipName(const QByteArray& rawName, const QByteArray& extraField)
{
    QString name = parseExtraField(extraField);
    if (name.isEmpty() && !isUtf8(rawName, name))
        name = GEncoding::GetOEM()->Decode(rawName);
    return withSlashes(name);
}

QByteArray ZipName::createExtraField(const QString& name)
{
    const QByteArray text = cByteOrderMark + withSlashes(name).toUtf8();
    QByteArray length(cLengthSize, '\0');
    qToBigEndian<qint32>(text.size(), length.data());
    return cFieldID + length + text;
}

QString ZipName::parseExtraField(const QByteArray& extraField)
{
    int offset = 0;
    while (offset + cHeaderSize <= extraField.size()) {
        const QByteArray id = extraField.mid(offset, cFieldID.size());
        const qint32 length = qFromBigEndian<qint32>(extraField.constData() + offset + cFieldID.size());
        if (length < 0 || length > extraField.size() - cFieldID.size())
            break;
        const QByteArray data = extraField.mid(offset + cHeaderSize, length);
        if (data.size() < length)
            break;
        if (id == cFieldID && data.startsWith(cByteOrderMark))
            return QString::fromUtf8(data.constData() + cByteOrderMark.size(),
                                     data.size() - cByteOrderMark.size());
        offset += cHeaderSize + length;
    }
    return {};
}
}  // namespace Morvane
