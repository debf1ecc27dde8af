#include "widgets/GQUIWindow.h"

#include "widgets/GCUSModalTime.h"

GQUIWindow::GQUIWindow(QWidget* parent, Qt::WindowFlags flags) : QDialog(parent, flags)
{
    if (flags == Qt::WindowFlags())
        setWindowFlag(Qt::WindowContextHelpButtonHint, false);
}

int GQUIWindow::exec()
{
    const GCUSModalTime modal(*this);
    return QDialog::exec();
}
