#pragma once

#include <QAbstractButton>

// A button with the picture of a chain, closed when checked and broken when not: links the fields beside it.
class GQUIChainButton : public QAbstractButton
{
    Q_OBJECT

public:
    explicit GQUIChainButton(QWidget* parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
};
