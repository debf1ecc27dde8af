#include "widgets/GCUSModalTime.h"

#include <QDialog>
#include <QWindow>

// Makes a dialog a window of the parent window while it is modal.
class GCUSModalTime::ParentWindowLink
{
public:
    explicit ParentWindowLink(QDialog& dialog) : mDialog(dialog)
    {
        if (mDialog.parentWidget() != nullptr)
            return;
        if (QWindow* parent = FindParent())
            GetWindow()->setTransientParent(parent);
    }

    ~ParentWindowLink()
    {
        QWindow* window = mDialog.windowHandle();
        if (window != nullptr && mDialog.parentWidget() == nullptr)
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

GCUSModalTime::GCUSModalTime(QDialog& dialog) : mLink(std::make_unique<ParentWindowLink>(dialog)) {}

GCUSModalTime::~GCUSModalTime() = default;

int RunModally(QDialog& dialog)
{
    const GCUSModalTime modal(dialog);
    return dialog.exec();
}
