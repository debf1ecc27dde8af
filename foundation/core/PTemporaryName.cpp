#include "foundation/core/PTemporaryName.h"

#include <QCryptographicHash>
#include <QRegularExpression>

GString PTemporaryName::GetStem(const GString& target)
{
    constexpr int cMostBytes = 190;  // of the 255 that file systems take
    constexpr int cBeginning = 40;   // characters
    constexpr int cDigest = 16;
    if (target.toUtf8().size() <= cMostBytes)
        return target;
    GString beginning = target.left(cBeginning);
    if (beginning.at(beginning.size() - 1).isHighSurrogate())
        beginning.chop(1);
    const QByteArray text = target.toCaseFolded().toUtf8();
    const QByteArray digest = QCryptographicHash::hash(text, QCryptographicHash::Sha256).toHex();
    return beginning + QLatin1Char('~') + QString::fromLatin1(digest.left(cDigest));
}

GString PTemporaryName::Make(const GString& target, const Maker& maker, const GString& random)
{
    return GetStem(target) + QStringLiteral(".%1-%2-%3-%4.new")
                                 .arg(QString::number(maker.process), QString::number(maker.startTime, 16),
                                      maker.machine, random);
}

std::optional<PTemporaryName> PTemporaryName::Read(const GString& name, const GString& target)
{
    static const QRegularExpression cRest(
        QStringLiteral("^\\.([0-9]+)-([0-9a-f]+)-([0-9a-f]{8})-[0-9a-z]{6}\\.new(\\.old)?$"));
    const GString stem = GetStem(target);
    if (!name.startsWith(stem, Qt::CaseInsensitive))
        return {};
    const QRegularExpressionMatch match = cRest.match(name.mid(stem.size()));
    if (!match.hasMatch())
        return {};
    return PTemporaryName{
        {match.captured(1).toUInt(), match.captured(2).toULongLong(nullptr, 16), match.captured(3)},
        !match.captured(4).isEmpty()};
}
