#include "widgets/GQUICollapsibleFrame.h"

#include <QHBoxLayout>
#include <QStyleOptionToolButton>
#include <QStylePainter>
#include <QToolButton>
#include <QVBoxLayout>

namespace
{
// Checked while the frame is open, which screen readers tell; the arrow shows it, so that the button need not
// look pressed.
class DisclosureButton : public QToolButton
{
public:
    using QToolButton::QToolButton;

protected:
    void paintEvent(QPaintEvent*) override
    {
        QStyleOptionToolButton option;
        initStyleOption(&option);
        option.state &= ~QStyle::State_On;
        QStylePainter(this).drawComplexControl(QStyle::CC_ToolButton, option);
    }
};
}  // namespace

GQUICollapsibleFrame::GQUICollapsibleFrame(const QString& title, QWidget* parent)
    : QFrame(parent), mButton(new DisclosureButton(this)), mHeader(new QHBoxLayout)
{
    mButton->setText(title);
    mButton->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    mButton->setAutoRaise(true);
    mButton->setCheckable(true);
    mButton->setChecked(true);
    mButton->setFocusPolicy(Qt::StrongFocus);
    mHeader->addWidget(mButton);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(mHeader);
    ShowParts();

    connect(mButton, &QToolButton::clicked, this, &GQUICollapsibleFrame::OnButtonClicked);
}

void GQUICollapsibleFrame::SetContent(QWidget* content)
{
    delete mContent;
    mContent = content;
    layout()->addWidget(content);
    ShowParts();
}

void GQUICollapsibleFrame::SetHeaderWidget(QWidget* widget, HeaderWidgetMode mode)
{
    delete mHeaderWidget;
    mHeaderWidget = widget;
    mHeaderWidgetMode = mode;
    mHeader->addWidget(widget, 1);
    ShowParts();
}

bool GQUICollapsibleFrame::IsCollapsed() const
{
    return !mButton->isChecked();
}

void GQUICollapsibleFrame::SetCollapsed(bool isCollapsed)
{
    mButton->setChecked(!isCollapsed);
    ShowParts();
}

QSize GQUICollapsibleFrame::sizeHint() const
{
    return WidenedByContent(QFrame::sizeHint());
}

QSize GQUICollapsibleFrame::minimumSizeHint() const
{
    return WidenedByContent(QFrame::minimumSizeHint());
}

void GQUICollapsibleFrame::OnButtonClicked()
{
    ShowParts();
    emit Clicked();
}

void GQUICollapsibleFrame::ShowParts()
{
    const bool isCollapsed = IsCollapsed();
    mButton->setArrowType(isCollapsed ? Qt::RightArrow : Qt::DownArrow);
    mButton->setAccessibleDescription(isCollapsed ? tr("Collapsed") : tr("Expanded"));
    if (mHeaderWidget != nullptr)
        mHeaderWidget->setVisible(mHeaderWidgetMode == cShownAlways ||
                                  isCollapsed == (mHeaderWidgetMode == cShownWhenCollapsed));
    if (mContent != nullptr)
        mContent->setVisible(!isCollapsed);
    updateGeometry();
}

QSize GQUICollapsibleFrame::WidenedByContent(QSize size) const
{
    if (mContent == nullptr)
        return size;
    const QMargins margins = layout()->contentsMargins();
    const int frame = 2 * frameWidth();
    const int width = mContent->minimumSizeHint().width() + margins.left() + margins.right() + frame;
    return size.expandedTo({width, 0});
}
