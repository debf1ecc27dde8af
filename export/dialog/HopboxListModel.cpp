#include "export/dialog/HopboxListModel.h"

#include <QTextDocument>

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
            return Qt::convertFromPlainText(item.text);  // a tip takes what looks like HTML for that
        case Qt::UserRole:
            return item.key;
        case cNameRole:
            return item.record.GetName(item.key);
        default:
            return {};
    }
}
