#include "hosts/scribus/sla/SlaContent.h"
#include "hosts/scribus/sla/SlaLinks.h"

#include <cstdlib>

// Whatever the text is, rewriting links to themselves leaves it alone, and links that were rewritten are
// found again as they were written.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray text(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const QString target = QStringLiteral("/a \"&'<>b");
    int rewritten = 0;
    int found = 0;
    if (SlaLinks::RewriteLinks(text, [](const QString& link) { return link; }) != text)
        std::abort();
    const QByteArray changed = SlaLinks::RewriteLinks(text, [&](const QString&) {
        ++rewritten;
        return target;
    });
    SlaLinks::RewriteLinks(changed, [&](const QString& link) {
        found += link == target ? 1 : 0;
        return link;
    });
    if (found != rewritten)
        std::abort();
    DocumentInfo info;
    info.pages.resize(3);
    SlaContent::Read(text, QStringLiteral("/nowhere"), info);
    QVector<int> pages;
    const GResult result = info.FindPages(QString::fromUtf8(text), pages);
    if (result.HasSucceeded() == pages.isEmpty())
        std::abort();
    return 0;
}
