#pragma once

#include <QFrame>

class QHBoxLayout;
class QToolButton;

// A frame with a header, whose disclosure button shows and hides the content below it. The frame is as wide
// collapsed as it is open, so that nothing around it moves sideways.
class GQUICollapsibleFrame : public QFrame
{
    Q_OBJECT

public:
    // When the widget in the header, to the right of the disclosure button, is visible.
    enum HeaderWidgetMode
    {
        cShownWhenOpen = 0,
        cShownWhenCollapsed = 1,
        cShownAlways = 2
    };

    // Open, without content. The title may hold a mnemonic.
    explicit GQUICollapsibleFrame(const QString& title, QWidget* parent = nullptr);

    // The frame takes over the widget; an earlier one is deleted.
    void SetContent(QWidget* content);
    void SetHeaderWidget(QWidget* widget, HeaderWidgetMode mode);

    bool IsCollapsed() const;
    void SetCollapsed(bool isCollapsed);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    // The user has opened or collapsed the frame, which has its new content by now.
    void Clicked();

private:
    void OnButtonClicked();
    void ShowParts();
    QSize WidenedByContent(QSize size) const;

    QToolButton* mButton;
    QHBoxLayout* mHeader;
    QWidget* mHeaderWidget = nullptr;
    HeaderWidgetMode mHeaderWidgetMode = cShownAlways;
    QWidget* mContent = nullptr;
};
