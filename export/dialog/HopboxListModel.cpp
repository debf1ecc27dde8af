#include "export/dialog/HopboxListModel.h"

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
    if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
        return item.text;
    return role == Qt::UserRole ? item.key : QVariant();
}
