#include "hosts/layout_host/window/DocumentView.h"

#include "hosts/layout_host/window/NameList.h"
#include "hosts/layout_host/window/PagePreview.h"

#include <QApplication>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QSplitter>
#include <QToolButton>
#include <QVBoxLayout>

namespace
{
constexpr double cPointsPerInch = 72;
constexpr double cMillimetresPerInch = 25.4;
constexpr double cPreviewPixels = 1100;  // of the longer side
constexpr int cPatience = 100;           // milliseconds until a busy host is asked again

QString FormatLength(double points)
{
    const bool isMetric = QLocale().measurementSystem() == QLocale::MetricSystem;
    const double inches = points / cPointsPerInch;
    return QLocale().toString(isMetric ? inches * cMillimetresPerInch : inches, 'f', isMetric ? 1 : 3);
}

QString GetUnitName()
{
    return QLocale().measurementSystem() == QLocale::MetricSystem ? QStringLiteral("mm")
                                                                  : QStringLiteral("in");
}

QString FormatSize(const DocumentPage& page)
{
    return QStringLiteral("%1 \u00D7 %2 %3")
        .arg(FormatLength(page.width), FormatLength(page.height), GetUnitName());
}

// "3 mm on all sides", or the four of them.
QString FormatBleed(const DocumentBleed& bleed)
{
    const QStringList sides = {FormatLength(bleed.top), FormatLength(bleed.bottom),
                               FormatLength(bleed.inside), FormatLength(bleed.outside)};
    if (sides.count(sides.constFirst()) == sides.size())
        return bleed.top > 0 ? QStringLiteral("%1 %2").arg(sides.constFirst(), GetUnitName())
                             : DocumentView::tr("none");
    return DocumentView::tr("%1 %2 (top, bottom, inside, outside)")
        .arg(sides.join(QStringLiteral(" / ")), GetUnitName());
}

QString GetSideName(PageSide side)
{
    switch (side) {
        case PageSide::Left:
            return DocumentView::tr(", left");
        case PageSide::Middle:
            return DocumentView::tr(", middle");
        case PageSide::Right:
            return DocumentView::tr(", right");
        default:
            return {};
    }
}

QString MakeRow(const QString& name, const QString& value)
{
    return QStringLiteral("<tr><td>%1&nbsp;&nbsp;</td><td>%2</td></tr>")
        .arg(name.toHtmlEscaped(), value.toHtmlEscaped());
}

QString MakeFacts(const DocumentInfo& info)
{
    QString rows = MakeRow(DocumentView::tr("Pages"),
                           QString::number(info.pages.size()) +
                               (info.hasFacingPages ? DocumentView::tr(", facing") : QString()));
    if (!info.pages.isEmpty())
        rows += MakeRow(DocumentView::tr("Size"), FormatSize(info.pages.constFirst()));
    rows += MakeRow(DocumentView::tr("Bleed"), FormatBleed(info.bleed));
    rows += MakeRow(DocumentView::tr("Colours"), QString::number(info.colors.size()));
    if (!info.title.isEmpty())
        rows += MakeRow(DocumentView::tr("Title"), info.title);
    return QStringLiteral("<table>%1</table>").arg(rows);
}

QVector<NameRow> MakeRows(const QVector<DocumentFont>& fonts)
{
    QVector<NameRow> rows;
    for (const DocumentFont& font : fonts)
        rows.append({font.name, font.file, font.isMissing});
    return rows;
}

QVector<NameRow> MakeRows(const QVector<DocumentLink>& links)
{
    QVector<NameRow> rows;
    for (const DocumentLink& link : links)
        rows.append({QFileInfo(link.path).fileName(), link.path, link.isMissing});
    return rows;
}
}  // namespace

DocumentView::DocumentView(const std::function<bool()>& isBusy, QWidget* parent)
    : QWidget(parent), mIsBusy(isBusy)
{
    auto* splitter = new QSplitter(Qt::Horizontal, this);
    splitter->addWidget(MakePageSide());
    splitter->addWidget(MakeFactSide());
    splitter->setStretchFactor(0, 1);
    splitter->setChildrenCollapsible(false);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(splitter);
    mDrawing.setSingleShot(true);

    connect(mPrevious, &QToolButton::clicked, this, [this] { TurnTo(mPageIndex - 1); });
    connect(mNext, &QToolButton::clicked, this, [this] { TurnTo(mPageIndex + 1); });
    connect(&mDrawing, &QTimer::timeout, this, [this] { DrawPage(); });
    ShowText(QString());
}

DocumentView::~DocumentView() = default;

QWidget* DocumentView::MakePageSide()
{
    auto* side = new QWidget(this);
    mPreview = new PagePreview(side);
    mPrevious = new QToolButton(side);
    mPrevious->setArrowType(Qt::LeftArrow);
    mPrevious->setShortcut(QKeySequence::MoveToPreviousPage);
    mPageLabel = new QLabel(side);
    mPageLabel->setAlignment(Qt::AlignCenter);
    mPageLabel->setMinimumWidth(180);
    mNext = new QToolButton(side);
    mNext->setArrowType(Qt::RightArrow);
    mNext->setShortcut(QKeySequence::MoveToNextPage);
    auto* turning = new QHBoxLayout;
    turning->addStretch();
    turning->addWidget(mPrevious);
    turning->addWidget(mPageLabel);
    turning->addWidget(mNext);
    turning->addStretch();
    auto* layout = new QVBoxLayout(side);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(mPreview, 1);
    layout->addLayout(turning);
    return side;
}

QWidget* DocumentView::MakeFactSide()
{
    auto* side = new QWidget(this);
    mFacts = new QLabel(side);
    mFacts->setWordWrap(true);
    mFacts->setTextInteractionFlags(Qt::TextSelectableByMouse);
    mFonts = new NameList(tr("Fonts"), side);
    mLinks = new NameList(tr("Links"), side);
    auto* layout = new QVBoxLayout(side);
    layout->setContentsMargins(6, 6, 6, 6);
    layout->addWidget(mFacts);
    layout->addSpacing(8);
    layout->addWidget(mFonts, 1);
    layout->addWidget(mLinks, 1);
    side->setMinimumWidth(300);  // room for the names of most fonts
    return side;
}

void DocumentView::ShowDocument(const std::shared_ptr<ScribusDocument>& document)
{
    if (document != mDocument)
        mPageIndex = 0;
    mDocument = document;
    if (!mDocument) {
        ShowText(tr("Open a document with Ctrl+O."));
        return;
    }
    const DocumentInfo* info = mDocument->GetInfo();
    if (info == nullptr || info->pages.isEmpty()) {
        ShowText(mDocument->GetError());
        return;
    }
    ShowFacts(*info);
    mPageIndex = qBound(0, mPageIndex, info->pages.size() - 1);
    ShowPage(*info);
}

void DocumentView::Refresh()
{
    if (mDocument && FileStamp::Of(mDocument->GetContentPath()) != mDocument->GetStamp())
        ShowDocument(mDocument);
}

void DocumentView::ShowFacts(const DocumentInfo& info)
{
    mFacts->setText(MakeFacts(info));
    mFonts->Show(MakeRows(info.fonts));
    mLinks->Show(MakeRows(info.links));
}

void DocumentView::ShowText(const QString& text)
{
    mDrawing.stop();
    mFacts->clear();
    mFonts->Show({});
    mLinks->Show({});
    mPageLabel->clear();
    mPrevious->setEnabled(false);
    mNext->setEnabled(false);
    mPreview->ShowPage(QSizeF(), QImage(), text);
}

void DocumentView::TurnTo(int pageIndex)
{
    mPageIndex = pageIndex;
    ShowDocument(mDocument);
}

// The empty page stands until its picture is there.
void DocumentView::ShowPage(const DocumentInfo& info)
{
    const DocumentPage& page = info.pages.at(mPageIndex);
    mPrevious->setEnabled(mPageIndex > 0);
    mNext->setEnabled(mPageIndex + 1 < info.pages.size());
    const QString place = tr("%1 of %2").arg(mPageIndex + 1).arg(info.pages.size());
    mPageLabel->setText(
        page.number.isEmpty() ? place : tr("Page %1%2 (%3)").arg(page.number, GetSideName(page.side), place));
    mPreview->ShowPage(QSizeF(page.width, page.height), QImage(), tr("Drawing..."));
    mDrawing.start(0);
}

void DocumentView::DrawPage()
{
    if (mIsBusy()) {
        mDrawing.start(cPatience);
        return;
    }
    const DocumentInfo* info = mDocument ? mDocument->GetInfo() : nullptr;
    if (info == nullptr || mPageIndex >= info->pages.size())
        return;
    const QSizeF size(info->pages.at(mPageIndex).width, info->pages.at(mPageIndex).height);
    const double longer = qMax(1.0, qMax(size.width(), size.height()));
    const int dotsPerInch = qBound(10, static_cast<int>(cPreviewPixels * cPointsPerInch / longer), 300);
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const QImage image = mDocument->GetPreview(mPageIndex, dotsPerInch);
    QApplication::restoreOverrideCursor();
    mPreview->ShowPage(size, image, image.isNull() ? tr("This page can't be shown.") : QString());
}
