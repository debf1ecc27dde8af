#include "foundation/core/SystemEncodings.h"

#include <windows.h>

namespace
{
// A code page that Windows converts.
class PCodePageEncoding : public GEncoding
{
public:
    explicit PCodePageEncoding(UINT codePage)
        : GEncoding(QStringLiteral("CP%1").arg(codePage), ByteOrder::cNone),
          mCodePage(codePage),
          mIsComplete(HasEveryCharacter(codePage))
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
        BOOL isReplaced = FALSE;
        const char* const fallback = mIsComplete ? nullptr : &replacement;
        BOOL* const usesFallback = mIsComplete ? nullptr : &isReplaced;
        const auto convert = [&](char* target, int size) {
            return ::WideCharToMultiByte(mCodePage, mIsComplete ? 0 : WC_NO_BEST_FIT_CHARS, source, count,
                                         target, size, fallback, usesFallback);
        };
        GBuffer bytes(convert(nullptr, 0), Qt::Uninitialized);
        convert(bytes.data(), bytes.size());
        isComplete = isReplaced == FALSE;
        return bytes;
    }

    // Windows refuses to be told about replacements for the code pages that have every character.
    static bool HasEveryCharacter(UINT codePage)
    {
        constexpr UINT cGB18030 = 54936;
        return codePage == CP_UTF7 || codePage == cGB18030;
    }

    UINT mCodePage;
    bool mIsComplete;
};

// UTF-8 is the same everywhere, and Windows leaves holes in its code page 1252.
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
