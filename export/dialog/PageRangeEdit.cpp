#include "export/dialog/PageRangeEdit.h"

#include "export/DocumentSource.h"
#include "plugin/host/HostFault.h"

#include <QRegularExpressionValidator>

// Also when the host can't tell: the export says so then.
static bool NamesPages(const QString& range)
{
    bool namesPages = true;
    HostFault::Contain("PageRangeEdit", [&] { namesPages = DocumentSource::HasPages(range).value_or(true); });
    return namesPages;
}

// As much of a long range as a line of the dialog holds.
static QString GetEnd(const QString& range)
{
    constexpr int cShown = 20;
    return range.size() <= cShown ? range : QStringLiteral("\u2026") + range.right(cShown);
}

PageRangeEdit::PageRangeEdit(QWidget* parent) : QLineEdit(parent)
{
    setPlaceholderText(tr("e.g. 1-5,8,11-13"));
    setAccessibleName(tr("Page range"));
    const QRegularExpression ranges(QStringLiteral("^(\\d+(-\\d+)?)(,\\d+(-\\d+)?)*$"));
    setValidator(new QRegularExpressionValidator(ranges, this));
    connect(this, &QLineEdit::textChanged, this, &PageRangeEdit::OnTextChanged);
}

void PageRangeEdit::OnTextChanged()
{
    mComplaint.clear();
    if (text().isEmpty())
        return;
    if (!hasAcceptableInput())
        mComplaint = tr("A page number is missing after \"%1\".").arg(GetEnd(text()));
    else if (!NamesPages(text()))
        mComplaint = tr("The page range names no page of the document.");
}
