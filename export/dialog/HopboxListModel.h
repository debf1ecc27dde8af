#pragma once

#include "export/dialog/HopboxList.h"

#include <QAbstractListModel>

// A list of Hopboxes for a combo box: the texts, tips that show them whole with the Hopbox's name, the keys
// as user data, and the names for whoever drives the dialog. The items are those of the list, in its order;
// nothing is copied for each.
class HopboxListModel : public QAbstractListModel
{
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    // The Hopbox's name, as hopboxctl lists it.
    static constexpr int cNameRole = Qt::UserRole + 1;

    const HopboxList& GetList() const { return mList; }
    void SetList(HopboxList list);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    static QString DescribeItem(const HopboxList::Item& item);

    HopboxList mList;
};
