#include "widgets/GCUSModalDialog.h"

#include "widgets/GCUSModal.h"

#include <QDialog>
#include <QWindow>

#include <memory>

namespace
{
// Makes a dialog a window of the parent window while it runs.
class ParentWindowLink
{
public:
    explicit ParentWindowLink(QDialog& dialog) : mDialog(dialog)
    {
        if (QWindow* parent = FindParent())
            GetWindow()->setTransientParent(parent);
    }

    ~ParentWindowLink()
    {
        if (QWindow* window = mDialog.windowHandle())
            window->setTransientParent(nullptr);
    }

    ParentWindowLink(const ParentWindowLink&) = delete;
    ParentWindowLink& operator=(const ParentWindowLink&) = delete;

private:
    QWindow* FindParent()
    {
        const WId parent = GCUSModal::GetParentWindow();
        if (parent == 0)
            return nullptr;
        if (const QWidget* own = QWidget::find(parent))
            return own->window()->windowHandle();
        mForeign.reset(QWindow::fromWinId(parent));
        return mForeign.get();
    }

    QWindow* GetWindow()
    {
        mDialog.winId();  // makes the native window
        return mDialog.windowHandle();
    }

    QDialog& mDialog;
    std::unique_ptr<QWindow> mForeign;
};
}  // namespace

int RunModally(QDialog& dialog)
{
    const ParentWindowLink link(dialog);
    const GCUSModal::Scope modal;
    return dialog.exec();
}
