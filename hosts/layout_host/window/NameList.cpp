#include "hosts/layout_host/window/NameList.h"

#include <QHeaderView>
#include <QLabel>
#include <QStyle>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace
{
const QColor cMissingColour(0xB0, 0x00, 0x20);

QTreeWidgetItem* MakeItem(const NameRow& row, const QWidget& widget)
{
    auto* item = new QTreeWidgetItem(QStringList(row.name));
    item->setToolTip(0, row.detail.isEmpty() ? row.name : row.detail);
    if (row.isMissing) {
        item->setText(0, NameList::tr("%1 (missing)").arg(row.name));
        item->setForeground(0, cMissingColour);
        item->setIcon(0, widget.style()->standardIcon(QStyle::SP_MessageBoxWarning));
    }
    return item;
}
}  // namespace

NameList::NameList(const QString& title, QWidget* parent)
    : QWidget(parent), mTitle(title), mHeading(new QLabel(this)), mRows(new QTreeWidget(this))
{
    QFont bold = mHeading->font();
    bold.setBold(true);
    mHeading->setFont(bold);
    mRows->setHeaderHidden(true);
    mRows->setRootIsDecorated(false);
    // A long name is scrolled to: fonts differ in the end of their names as often as in the beginning.
    mRows->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    mRows->header()->setStretchLastSection(false);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(mHeading);
    layout->addWidget(mRows);
    Show({});
}

NameList::~NameList() = default;

void NameList::Show(const QVector<NameRow>& rows)
{
    QVector<NameRow> sorted = rows;
    std::stable_partition(sorted.begin(), sorted.end(), [](const NameRow& row) { return row.isMissing; });
    mRows->clear();
    int missing = 0;
    for (const NameRow& row : sorted) {
        mRows->addTopLevelItem(MakeItem(row, *this));
        missing += row.isMissing ? 1 : 0;
    }
    QString heading = rows.isEmpty() ? mTitle : QStringLiteral("%1: %2").arg(mTitle).arg(rows.size());
    if (missing > 0)
        heading += tr(", %1 missing").arg(missing);
    mHeading->setText(heading);
}
