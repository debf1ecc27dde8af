#include "foundation/prefs/GText2BinStream.h"

#include "foundation/core/GDictUtil.h"
#include "foundation/core/GStringSupport.h"

GText2BinStream::GText2BinStream(GOutputStream& target, const GEncodingRef& encoding) : mTarget(target)
{
    SetEncoding(encoding, ByteOrderMark::cWrite);
}

GText2BinStream::GText2BinStream(std::unique_ptr<GOutputStream> target, const GEncodingRef& encoding)
    : mOwned(std::move(target)), mTarget(*mOwned)
{
    SetEncoding(encoding, ByteOrderMark::cWrite);
}

void GText2BinStream::SetEncoding(const GEncodingRef& encoding, ByteOrderMark mark)
{
    mEncoding = encoding;
    mEOL = encoding->Encode(GDictUtil::GetEOLString());
    if (mark == ByteOrderMark::cWrite && encoding->GetCharWidth() == 2)
        WriteBuffer(encoding->Encode(GString(QChar::ByteOrderMark)));
}

void GText2BinStream::Write(const GString& text)
{
    if (mEncoding == GEncoding::GetUTF16())  // the text as it lies in memory
        mTarget.Write(reinterpret_cast<const char*>(text.constData()), text.size() * 2);
    else
        mTarget.WriteBuffer(mEncoding->Encode(text));
}

void GText2BinStream::Write(const char* text)
{
    Write(GString::fromLatin1(text));
}

void GText2BinStream::Write(const char* bytes, int count)
{
    mTarget.Write(bytes, count);
}

void GText2BinStream::WriteEOL()
{
    mTarget.WriteBuffer(mEOL);
}

void GText2BinStream::WriteQuotedString(const GString& text)
{
    GString quoted = text;
    GStringSupport::QuoteString(quoted);
    Write(quoted);
}
