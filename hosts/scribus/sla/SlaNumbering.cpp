#include "hosts/scribus/sla/SlaNumbering.h"

#include "hosts/scribus/sla/SlaScanner.h"

constexpr int cLargestNumber = 1000000;

static int GetNumber(const SlaScanner& section, const char* attribute)
{
    return static_cast<int>(qBound<double>(0, section.GetNumber(attribute), cLargestNumber));
}

QByteArray SlaNumbering::Continue(const QByteArray& text, int first, int& next)
{
    SlaEdit edit(text);
    SlaScanner element({text.constData(), static_cast<size_t>(text.size())});
    int before = -1;  // the number behind the section before, as the document has it; -1 for no section yet
    next = first;
    while (element.Next()) {
        if (element.GetName() != "Section" || !element.Has("Start") || element.GetNumber("Active") == 0)
            continue;
        const int start = GetNumber(element, "Start");
        const int count = qMax(0, GetNumber(element, "To") - GetNumber(element, "From") + 1);
        const bool goesOn = before < 0 || start == before;
        const int changed = goesOn ? next : start;
        edit.Replace(element.GetPlace("Start"), QString::number(changed));
        before = start + count;
        next = changed + count;
    }
    return edit.Finish();
}
