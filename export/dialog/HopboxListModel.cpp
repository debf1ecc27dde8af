#include "export/dialog/HopboxListModel.h"

#include "widgets/GQUITip.h"

// The text, and the name that tells Hopboxes of one text apart.
QString HopboxListModel::DescribeItem(const HopboxList::Item& item)
{
    return tr("%1\nHopbox: %2").arg(item.text, item.GetRecord().GetName(item.key));
}

void HopboxListModel::SetList(HopboxList list)
{
    beginResetModel();
    mList = std::move(list);
    endResetModel();
}

int HopboxListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(mList.GetItems().size());
}

QVariant HopboxListModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const HopboxList::Item& item = mList.GetItems().at(static_cast<size_t>(index.row()));
    switch (role) {
        case Qt::DisplayRole:
            return item.text;
        case Qt::ToolTipRole:
            return GQUITip::FromPlainText(DescribeItem(item));
        case Qt::AccessibleDescriptionRole:
            return DescribeItem(item);
        case Qt::UserRole:
            return item.key;
        case cNameRole:
            return item.GetRecord().GetName(item.key);
        default:
            return {};
    }
}
