#include "archive/ZipDirectory.h"

#include "archive/ZipInput.h"

#include <QtEndian>

#include <algorithm>
#include <utility>
#include <vector>

namespace Morvane
{
namespace
{
constexpr int cEndSize = 22;
constexpr int cLocatorSize = 20;
constexpr int cEnd64Size = 56;
constexpr int cRecordSize = 46;                    // without name, extra field and comment
constexpr qint64 cSearchedSize = 4 * 1024 * 1024;  // from the end; other programs look less far
constexpr int cSearchStep = 32 * 1024;
constexpr int cLocalHeaderSize = 30;  // without name and extra field
constexpr qint64 cIsLarge = 0xffffffff;
const QByteArray cEndMark = QByteArrayLiteral("PK\5\6");
const QByteArray cEnd64Mark = QByteArrayLiteral("PK\6\6");
const QByteArray cLocatorMark = QByteArrayLiteral("PK\6\7");
const QByteArray cRecordMark = QByteArrayLiteral("PK\1\2");

template <typename Number>
qint64 getNumber(const QByteArray& bytes, int offset)
{
    return static_cast<qint64>(qFromLittleEndian<Number>(bytes.constData() + offset));
}

template <typename Number>
void putNumber(QByteArray& bytes, qint64 value)
{
    char number[sizeof(Number)];
    qToLittleEndian<Number>(static_cast<Number>(value), number);
    bytes.append(number, sizeof number);
}

// Empty when the archive does not hold that many bytes there.
QByteArray read(ZipInput& input, qint64 offset, int size)
{
    QByteArray bytes(size, '\0');
    return input.readAt(offset, bytes.data(), size) == size ? bytes : QByteArray();
}

bool hasMark(ZipInput& input, qint64 offset, const QByteArray& mark)
{
    return read(input, offset, mark.size()) == mark;
}

// What the records at an archive's end say of its directory.
struct Claim
{
    qint64 place = 0;  // of the first of these records
    qint64 size = 0;
    qint64 offset = 0;
    qint64 count = 0;
};

// The record with the large numbers, at the place that its locator names or, behind a prefix, just before it.
void readLargeClaim(ZipInput& input, qint64 locator, Claim& claim)
{
    const QByteArray bytes = read(input, locator, cLocatorSize);
    if (!bytes.startsWith(cLocatorMark))
        return;
    for (const qint64 place : {getNumber<quint64>(bytes, 8), locator - cEnd64Size}) {
        const QByteArray record =
            place >= 0 && place < locator ? read(input, place, cEnd64Size) : QByteArray();
        if (record.startsWith(cEnd64Mark)) {
            claim = {place, getNumber<quint64>(record, 40), getNumber<quint64>(record, 48),
                     getNumber<quint64>(record, 32)};
            return;
        }
    }
}

// Goes along the records, as many as there are before the end.
void walk(ZipInput& input, qint64 limit, ZipDirectory& directory)
{
    directory.end = directory.start;
    for (;;) {
        const QByteArray record = read(input, directory.end, cRecordSize);
        if (!record.startsWith(cRecordMark))
            return;
        const qint64 next = directory.end + cRecordSize + getNumber<quint16>(record, 28) +
                            getNumber<quint16>(record, 30) + getNumber<quint16>(record, 32);
        if (next > limit)
            return;
        directory.end = next;
        ++directory.count;
    }
}

// The sizes and the place of an entry that do not fit into 32 bits stand in an extra field, in this order. It
// is walked as the library walks it.
void readLargeNumbers(const QByteArray& field, qint64& size, qint64& packedSize, qint64& offset)
{
    constexpr qint64 cLargeID = 1;
    for (int place = 0; place + 4 <= field.size();) {
        const int length = static_cast<int>(getNumber<quint16>(field, place + 2));
        if (getNumber<quint16>(field, place) == cLargeID) {
            int next = place + 4;
            for (qint64* number : {&size, &packedSize, &offset}) {
                if (*number == cIsLarge && next + 8 <= field.size()) {
                    *number = getNumber<quint64>(field, next);
                    next += 8;
                }
            }
        }
        place += 4 + length;
    }
}

// The bytes that the entry of a record takes at least.
std::pair<qint64, qint64> getExtent(ZipInput& input, qint64 place, const QByteArray& record, qint64 prefix)
{
    qint64 size = getNumber<quint32>(record, 24);
    qint64 packedSize = getNumber<quint32>(record, 20);
    qint64 offset = getNumber<quint32>(record, 42);
    if (size == cIsLarge || packedSize == cIsLarge || offset == cIsLarge)
        readLargeNumbers(read(input, place + cRecordSize + getNumber<quint16>(record, 28),
                              static_cast<int>(getNumber<quint16>(record, 30))),
                         size, packedSize, offset);
    const qint64 limit = input.getSize();
    const qint64 start = qBound<qint64>(0, offset, limit) + prefix;
    return {start, start + cLocalHeaderSize + qBound<qint64>(0, packedSize, limit)};
}

std::optional<ZipDirectory> findBefore(ZipInput& input, qint64 endRecord)
{
    const QByteArray record = read(input, endRecord, cEndSize);
    if (record.isEmpty() || getNumber<quint16>(record, 4) != getNumber<quint16>(record, 6))
        return std::nullopt;
    Claim claim = {endRecord, getNumber<quint32>(record, 12), getNumber<quint32>(record, 16),
                   getNumber<quint16>(record, 10)};
    readLargeClaim(input, endRecord - cLocatorSize, claim);
    ZipDirectory directory;
    directory.comment = read(input, endRecord + cEndSize, static_cast<int>(getNumber<quint16>(record, 20)));
    const bool isEmpty = claim.count == 0 && !hasMark(input, claim.place - claim.size, cRecordMark);
    if (claim.size < 0 || claim.offset < 0 || claim.count < 0)
        return std::nullopt;
    // Just before the records where that fits, with the rest for a prefix; else where the archive says.
    directory.start = isEmpty ? claim.place : claim.place - claim.size;
    if (!isEmpty && (directory.start < claim.offset || !hasMark(input, directory.start, cRecordMark)))
        directory.start = claim.offset;
    directory.prefix = isEmpty ? 0 : directory.start - claim.offset;
    walk(input, claim.place, directory);
    if (!isEmpty && directory.count == 0)
        return std::nullopt;
    const bool isPossible = claim.count <= input.getSize() / cRecordSize;
    directory.count = isPossible ? std::max(claim.count, directory.count) : -1;
    return directory;
}
}  // namespace

QByteArray ZipDirectory::makeEnd() const
{
    constexpr int cVersion = 45;
    QByteArray bytes = cEnd64Mark;
    putNumber<quint64>(bytes, cEnd64Size - 12);
    putNumber<quint32>(bytes, cVersion << 16 | cVersion);
    putNumber<quint64>(bytes, 0);  // disks
    putNumber<quint64>(bytes, count);
    putNumber<quint64>(bytes, count);
    putNumber<quint64>(bytes, end - start);
    putNumber<quint64>(bytes, start - prefix);
    bytes += cLocatorMark;
    putNumber<quint32>(bytes, 0);
    putNumber<quint64>(bytes, end);
    putNumber<quint32>(bytes, 1);
    return bytes + cEndMark + QByteArray(4, '\0') + QByteArray(12, '\xff') + QByteArray(2, '\0');
}

bool haveEntriesOverlap(ZipInput& input, const ZipDirectory& directory)
{
    std::vector<std::pair<qint64, qint64>> extents;
    for (qint64 place = directory.start; place < directory.end;) {
        const QByteArray record = read(input, place, cRecordSize);
        if (record.isEmpty())
            break;
        extents.push_back(getExtent(input, place, record, directory.prefix));
        place += cRecordSize + getNumber<quint16>(record, 28) + getNumber<quint16>(record, 30) +
                 getNumber<quint16>(record, 32);
    }
    std::sort(extents.begin(), extents.end());
    const auto isInto = [](const auto& one, const auto& next) { return next.first < one.second; };
    return std::adjacent_find(extents.begin(), extents.end(), isInto) != extents.end();
}

// The record nearest to the end counts whose directory is there: bytes behind the archive may look like one.
std::optional<ZipDirectory> findZipDirectory(ZipInput& input)
{
    const qint64 last = input.getSize() - cEndSize;
    const qint64 first = std::max<qint64>(last - cSearchedSize, 0);
    for (qint64 end = last; end >= first && !input.hasFailed(); end -= cSearchStep) {
        const qint64 start = std::max(end - cSearchStep + 1, first);
        const QByteArray bytes = read(input, start, static_cast<int>(end - start) + cEndMark.size());
        for (int index = bytes.lastIndexOf(cEndMark); index >= 0;
             index = index > 0 ? bytes.lastIndexOf(cEndMark, index - 1) : -1) {
            const std::optional<ZipDirectory> directory = findBefore(input, start + index);
            if (directory.has_value())
                return input.hasFailed() ? std::nullopt : directory;
        }
    }
    return std::nullopt;
}
}  // namespace Morvane
