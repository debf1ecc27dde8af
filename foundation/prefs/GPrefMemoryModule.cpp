#include "foundation/prefs/GPrefMemoryModule.h"

#include "foundation/core/GMemoryInputStream.h"
#include "foundation/core/GMemoryOutputStream.h"

static const QChar cByteOrderMark(0xFEFF);

GPrefMemoryModule::GPrefMemoryModule() : GPrefModule(GEncoding::GetUTF16()) {}

GPrefMemoryModule::GPrefMemoryModule(const GString& text) : GPrefMemoryModule()
{
    ReadGroups(*GMemoryInputStream::CreateOnText(text), GetEncoding(), QStringLiteral("a text"));
}

GPrefMemoryModule::GPrefMemoryModule(const GBuffer& bytes, const GEncodingRef& encoding) : GPrefMemoryModule()
{
    GMemoryInputStream stream(bytes);
    ReadGroups(stream, encoding, QStringLiteral("a buffer"));
}

GString GPrefMemoryModule::GetPrefsData() const
{
    GMemoryOutputStream stream;
    GetPrefsDataToStream(stream, GEncoding::GetUTF16());
    GString text = GEncoding::GetUTF16()->Decode(stream.GetData());
    return text.startsWith(cByteOrderMark) ? text.mid(1) : text;
}

void GPrefMemoryModule::ReadDict() {}

void GPrefMemoryModule::WriteDict()
{
    NoteWritten();
}
