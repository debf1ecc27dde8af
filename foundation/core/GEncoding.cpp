#include "foundation/core/GEncoding.h"

#include "foundation/core/GSingleByteEncoding.h"
#include "foundation/core/SystemEncodings.h"

#include <QSysInfo>
#include <QtEndian>

#include <algorithm>
#include <cstring>

namespace
{
class UTF16Encoding : public GEncoding
{
public:
    UTF16Encoding(const GString& name, ByteOrder byteOrder) : GEncoding(name, byteOrder) {}

    GString Decode(const GBuffer& bytes) const override
    {
        GString text(bytes.size() / 2, Qt::Uninitialized);
        CopyUnits(text.data(), bytes.constData(), text.size());
        return text;
    }

private:
    GBuffer EncodeText(const GString& text, char) const override
    {
        GBuffer bytes(text.size() * 2, Qt::Uninitialized);
        CopyUnits(bytes.data(), text.constData(), text.size());
        return bytes;
    }

    // Copies 16-bit units between this machine's order and the encoding's.
    void CopyUnits(void* target, const void* source, int count) const
    {
        std::memcpy(target, source, static_cast<size_t>(count) * 2);
        const auto units = static_cast<quint16*>(target);
        if (GetByteOrder() == ByteOrder::cLittleEndian)
            std::transform(units, units + count, units, [](quint16 unit) { return qToLittleEndian(unit); });
        else
            std::transform(units, units + count, units, [](quint16 unit) { return qToBigEndian(unit); });
    }
};

class UTF8Encoding : public GEncoding
{
public:
    UTF8Encoding() : GEncoding(QStringLiteral("UTF-8"), ByteOrder::cNone) {}

    GString Decode(const GBuffer& bytes) const override
    {
        // Qt takes marks at the start for no part of the text.
        static const GBuffer mark("\xEF\xBB\xBF");
        int markEnd = 0;
        while (bytes.size() - markEnd >= mark.size() &&
               std::memcmp(bytes.constData() + markEnd, mark.constData(), 3) == 0)
            markEnd += mark.size();
        const GString text = GString::fromUtf8(bytes.constData() + markEnd, bytes.size() - markEnd);
        return markEnd == 0 ? text : GString(markEnd / mark.size(), QChar::ByteOrderMark) + text;
    }

private:
    GBuffer EncodeText(const GString& text, char) const override { return text.toUtf8(); }
};

// Code page 1252 from 0x80 on; above 0x9F it is Latin-1.
constexpr char16_t cWinAnsi[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                   0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                   0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                   0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

GEncodingRef MakeWinAnsi()
{
    GSingleByteEncoding::UpperHalf upperHalf;
    for (size_t index = 0; index < upperHalf.size(); ++index)
        upperHalf[index] = index < 32 ? cWinAnsi[index] : static_cast<char16_t>(0x80 + index);
    return std::make_shared<GSingleByteEncoding>(QStringLiteral("WinAnsiEncoding"), upperHalf,
                                                 GSingleByteEncoding::Controls::cByNumber);
}
}  // namespace

GEncodingRef GEncoding::GetUTF16()
{
    return QSysInfo::ByteOrder == QSysInfo::LittleEndian ? GetUTF16LittleEndian() : GetUTF16BigEndian();
}

GEncodingRef GEncoding::GetUTF16LittleEndian()
{
    static const GEncodingRef encoding =
        std::make_shared<UTF16Encoding>(QStringLiteral("UTF-16LE"), ByteOrder::cLittleEndian);
    return encoding;
}

GEncodingRef GEncoding::GetUTF16BigEndian()
{
    static const GEncodingRef encoding =
        std::make_shared<UTF16Encoding>(QStringLiteral("UTF-16BE"), ByteOrder::cBigEndian);
    return encoding;
}

GEncodingRef GEncoding::GetUTF8()
{
    static const GEncodingRef encoding = std::make_shared<UTF8Encoding>();
    return encoding;
}

GEncodingRef GEncoding::GetWinAnsi()
{
    static const GEncodingRef encoding = MakeWinAnsi();
    return encoding;
}

GEncodingRef GEncoding::GetOEM()
{
    static const GEncodingRef encoding = MakeOEMEncoding();
    return encoding;
}

GEncodingRef GEncoding::GetPlatform8Bit()
{
    static const GEncodingRef encoding = MakePlatform8BitEncoding();
    return encoding;
}

GEncodingRef GEncoding::FindByName(const GString& name)
{
    const auto isName = [&name](QLatin1String other) {
        return name.compare(other, Qt::CaseInsensitive) == 0;
    };
    if (isName(QLatin1String("UTF-16")))
        return GetUTF16();
    if (isName(QLatin1String("OEM")))
        return GetOEM();
    if (isName(QLatin1String("Platform")))
        return GetPlatform8Bit();
    for (const GEncodingRef& encoding : {GetUTF16LittleEndian(), GetUTF16BigEndian(), GetUTF8(), GetWinAnsi(),
                                         GetOEM(), GetPlatform8Bit()}) {
        if (name.compare(encoding->GetName(), Qt::CaseInsensitive) == 0)
            return encoding;
    }
    return nullptr;
}
