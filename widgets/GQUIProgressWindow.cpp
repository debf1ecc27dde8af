#include "widgets/GQUIProgressWindow.h"

#include "widgets/GCUSModalTime.h"

#include <QDialogButtonBox>
#include <QFontMetrics>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

GQUIProgressWindow::GQUIProgressWindow(const QString& title, QWidget* parent)
    : GQUIWindow(parent), mText(new QLabel), mBar(new QProgressBar)
{
    setWindowTitle(title);
    mText->setTextFormat(Qt::PlainText);
    mText->setWordWrap(true);
    // Room for two lines, so that a longer text moves nothing.
    mText->setMinimumSize(fontMetrics().averageCharWidth() * 56, fontMetrics().lineSpacing() * 2);
    mBar->setTextVisible(false);
    SetProgress(0, 0);
    auto* buttons = new QDialogButtonBox;
    mCancel = buttons->addButton(tr("Cancel"), QDialogButtonBox::RejectRole);
    mCancel->setAutoDefault(false);  // a stray Return cancels nothing

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(mText);
    layout->addWidget(mBar);
    layout->addWidget(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(buttons, &QDialogButtonBox::rejected, this, &GQUIProgressWindow::reject);
}

GQUIProgressWindow::~GQUIProgressWindow() = default;

void GQUIProgressWindow::Start()
{
    mWasCancelled = false;
    mCancel->setEnabled(true);
    mModalTime = std::make_unique<GCUSModalTime>(*this);
    setWindowModality(Qt::ApplicationModal);
    show();
}

void GQUIProgressWindow::Finish()
{
    hide();
    mModalTime.reset();
}

void GQUIProgressWindow::SetText(const QString& text)
{
    mText->setText(text);
    mBar->setAccessibleName(text);
}

void GQUIProgressWindow::SetProgress(int done, int total)
{
    mBar->setRange(0, total);
    mBar->setValue(done);
}

void GQUIProgressWindow::reject()
{
    if (mWasCancelled)
        return;
    mWasCancelled = true;
    mCancel->setEnabled(false);
    emit Cancelled();
}
