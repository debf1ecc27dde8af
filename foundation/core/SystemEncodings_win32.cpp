#include "foundation/core/SystemEncodings.h"

#include <windows.h>

namespace
{
// A code page that Windows converts.
class PCodePageEncoding : public GEncoding
{
public:
    explicit PCodePageEncoding(UINT codePage)
        : GEncoding(QStringLiteral("CP%1").arg(codePage), ByteOrder::cNone), mCodePage(codePage)
    {
    }

    GString Decode(const GBuffer& bytes) const override
    {
        const int length = ::MultiByteToWideChar(mCodePage, 0, bytes.constData(), bytes.size(), nullptr, 0);
        GString text(length, Qt::Uninitialized);
        ::MultiByteToWideChar(mCodePage, 0, bytes.constData(), bytes.size(),
                              reinterpret_cast<wchar_t*>(text.data()), length);
        return text;
    }

private:
    GBuffer EncodeText(const GString& text, char replacement) const override
    {
        bool isComplete = true;
        const GBuffer bytes = Convert(text.constData(), text.size(), replacement, isComplete);
        return isComplete ? bytes : EncodeByCharacter(text, replacement);
    }

    // Windows replaces each half of a surrogate pair; one character is to become one replacement.
    GBuffer EncodeByCharacter(const GString& text, char replacement) const
    {
        GBuffer bytes;
        for (int index = 0; index < text.size(); ++index) {
            const bool isPair = text.at(index).isHighSurrogate() && index + 1 < text.size() &&
                                text.at(index + 1).isLowSurrogate();
            bool isComplete = true;
            const GBuffer character =
                Convert(text.constData() + index, isPair ? 2 : 1, replacement, isComplete);
            bytes.append(isComplete ? character : GBuffer(1, replacement));
            if (isPair)
                ++index;
        }
        return bytes;
    }

    GBuffer Convert(const QChar* text, int count, char replacement, bool& isComplete) const
    {
        const auto source = reinterpret_cast<const wchar_t*>(text);
        const DWORD flags = WC_NO_BEST_FIT_CHARS;
        BOOL isReplaced = FALSE;
        const int length =
            ::WideCharToMultiByte(mCodePage, flags, source, count, nullptr, 0, &replacement, &isReplaced);
        GBuffer bytes(length, Qt::Uninitialized);
        ::WideCharToMultiByte(mCodePage, flags, source, count, bytes.data(), length, &replacement,
                              &isReplaced);
        isComplete = isReplaced == FALSE;
        return bytes;
    }

    UINT mCodePage;
};

// Windows refuses a replacement character for UTF-8, which needs none, and leaves holes in its code page
// 1252.
GEncodingRef MakeEncoding(UINT codePage)
{
    if (codePage == CP_UTF8)
        return GEncoding::GetUTF8();
    if (codePage == 1252)
        return GEncoding::GetWinAnsi();
    return std::make_shared<PCodePageEncoding>(codePage);
}
}  // namespace

GEncodingRef MakeOEMEncoding()
{
    return MakeEncoding(::GetOEMCP());
}

GEncodingRef MakePlatform8BitEncoding()
{
    return MakeEncoding(::GetACP());
}
