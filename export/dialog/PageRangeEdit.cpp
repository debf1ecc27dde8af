#include "export/dialog/PageRangeEdit.h"

#include "export/DocumentSource.h"
#include "plugin/host/HostFault.h"

#include <QRegularExpressionValidator>

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
    HostFault::Contain("PageRangeEdit", [this] { TakePages(); });
    connect(this, &QLineEdit::textChanged, this, &PageRangeEdit::OnTextChanged);
}

void PageRangeEdit::TakePages()
{
    if (const HostPtr<IDocument> document = DocumentSource::QueryFront()) {
        mDataBase = document->GetDataBase();
        mPages = document->QueryPageList();
    }
}

// Also when the host can't tell: the export says so then.
bool PageRangeEdit::NamesPages() const
{
    bool namesPages = true;
    HostFault::Contain("PageRangeEdit", [&] {
        UIDList pages(mDataBase);
        namesPages = !mPages || (mPages->GetPageUIDs(PMString::Untranslated(text()), pages) == cSuccess &&
                                 !pages.IsEmpty());
    });
    return namesPages;
}

void PageRangeEdit::OnTextChanged()
{
    mComplaint.clear();
    if (text().isEmpty())
        return;
    if (!hasAcceptableInput())
        mComplaint = tr("A page number is missing after \"%1\".").arg(GetEnd(text()));
    else if (!NamesPages())
        mComplaint = tr("The document does not have all of these pages, or a range runs backwards.");
}
