#pragma once

#include "export/dialog/HopboxList.h"

#include <QAbstractListModel>

// A list of Hopboxes for a combo box: the texts, also as tips, and the keys as user data. The items are those
// of the list, in its order; nothing is copied for each.
class HopboxListModel : public QAbstractListModel
{
public:
    using QAbstractListModel::QAbstractListModel;

    const HopboxList& GetList() const { return mList; }
    void SetList(HopboxList list);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    HopboxList mList;
};
