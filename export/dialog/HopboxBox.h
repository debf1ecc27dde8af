#pragma once

#include "export/dialog/HopboxListModel.h"

#include <QComboBox>
#include <QElapsedTimer>

// The list of Hopboxes to choose from. However long their texts are, neither the field nor the open list is
// wider than half the screen: texts are cut in the middle then, and tips show them whole. A space that is
// typed within a text belongs to the search for it.
class HopboxBox : public QComboBox
{
    Q_OBJECT

public:
    explicit HopboxBox(QWidget* parent = nullptr);

    const HopboxList& GetList() const { return mModel->GetList(); }

    // Nothing is selected then.
    void SetList(HopboxList list) { mModel->SetList(std::move(list)); }

    // Null when there is none.
    const HopboxList::Item* GetCurrentItem() const;

    // The selection may be another one: shows its tip, and tells it to screen readers.
    void ShowCurrentTip();

    void showPopup() override;

signals:
    // The user has chosen "Remove" from the context menu.
    void RemoveChosen();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    bool IsSpaceWithinText(const QKeyEvent& event);

    HopboxListModel* mModel;
    QElapsedTimer mLastLetter;
};
