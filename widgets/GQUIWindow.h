#pragma once

#include <QDialog>

// The base of modal dialogs. While one runs it belongs to the parent window and is in a scope of the modal
// hooks (widgets/GCUSModal.h). For the main thread.
class GQUIWindow : public QDialog
{
    Q_OBJECT

public:
    explicit GQUIWindow(QWidget* parent = nullptr, Qt::WindowFlags flags = {});

    int exec() override;

protected:
    void showEvent(QShowEvent* event) override;
};
