#include "apps/hopboxctl/Command.h"

#include <cstdio>

static void Write(const QString& text, FILE* stream)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stream);
}

void Print(const QString& text)
{
    Write(text, stdout);
}

void PrintError(const QString& line)
{
    Write(QLatin1String("hopboxctl: ") + line + QLatin1Char('\n'), stderr);
}
