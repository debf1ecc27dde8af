#include "export/dialog/ExportDialogForm.h"

#include "export/GCPTSaveAsTool.h"
#include "export/dialog/HopboxBox.h"
#include "export/dialog/PageRangeEdit.h"
#include "widgets/GQUICollapsibleFrame.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>

namespace
{
// Pixels.
constexpr int cRowGap = 10;
constexpr int cButtonGap = 20;
constexpr int cOptionsIndent = 15;
}  // namespace

ExportDialogForm::ExportDialogForm(QWidget& dialog, const GCPTSaveAsTool& tool) : mDialog(dialog)
{
    pdfSettings = new HopboxBox(&mDialog);
    pdfSettingsLabel = new QLabel(tr("&PDF Settings:"), &mDialog);
    pdfSettingsLabel->setBuddy(pdfSettings);
    CreatePageRange(tool.GetOption(DialogOption::cPageRange));
    includePackage = new QCheckBox(tr("Include &File Package"), &mDialog);
    includePackage->setToolTip(tr("Check this option to deliver an InDesign file Package."));
    includePackage->setVisible(tool.GetOption(DialogOption::cFilePackage));
    CreateOptions(tool);
    message = new QLabel(&mDialog);
    message->setAlignment(Qt::AlignHCenter);
    message->setWordWrap(true);
    CreateButtons();

    auto* layout = new QVBoxLayout(&mDialog);
    layout->addLayout(MakeGrid());
    layout->addWidget(message);
    layout->addLayout(MakeButtonRow());
    layout->addStretch();
    // As wide without the options as with them.
    layout->addStrut(options->minimumSizeHint().width());
    layout->setSizeConstraint(QLayout::SetFixedSize);
}

void ExportDialogForm::CreatePageRange(bool isOffered)
{
    pagesLabel = new QLabel(tr("Pages:"), &mDialog);
    allPages = new QRadioButton(tr("&All"), &mDialog);
    allPages->setAccessibleDescription(pagesLabel->text());
    allPages->setChecked(true);
    allPages->setEnabled(isOffered);
    range = new QRadioButton(tr("&Range:"), &mDialog);
    range->setAccessibleDescription(pagesLabel->text());
    range->setEnabled(isOffered);
    pageRange = new PageRangeEdit(&mDialog);
    pageRange->setEnabled(false);
    pagesLabel->setBuddy(pageRange);
}

void ExportDialogForm::CreateOptions(const GCPTSaveAsTool& tool)
{
    options = new GQUICollapsibleFrame(tr("&Options"), &mDialog);
    auto* content = new QWidget;
    auto* contentLayout = new QVBoxLayout(content);
    contentLayout->setContentsMargins(cOptionsIndent, 0, 0, 0);
    adjustment = new GCUSPDFSettingsAdjWdt;
    contentLayout->addWidget(adjustment);
    options->SetContent(content);

    auto* line = new QFrame;
    line->setFrameStyle(QFrame::HLine | QFrame::Sunken);
    options->SetHeaderWidget(line, GQUICollapsibleFrame::cShownAlways);
    options->layout()->setContentsMargins(0, 0, 0, 0);
    options->SetCollapsed(true);

    using Control = GCUSPDFSettingsAdjWdt::Control;
    adjustment->SetShown(Control::cSlugArea, tool.GetOption(DialogOption::cSlugArea));
    adjustment->SetShown(Control::cSpreads, tool.GetOption(DialogOption::cSpreads));
    adjustment->SetShown(Control::cBleedMark, tool.GetOption(DialogOption::cBleedMark));
    adjustment->SetShown(Control::cMarkWeight, tool.GetOption(DialogOption::cMarkWeight));
}

void ExportDialogForm::CreateButtons()
{
    altHint = new QLabel(tr("Hold down the \"Alt\" key to remove a Hopbox from the list."), &mDialog);
    buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &mDialog);
    buttons->button(QDialogButtonBox::Cancel)->setText(tr("Cancel"));
    okButton = buttons->button(QDialogButtonBox::Ok);
    for (QAbstractButton* button : buttons->buttons())
        button->setIcon({});  // what a desktop draws for OK is wrong on "Remove"
    okButton->setAccessibleDescription(altHint->text());
}

void ExportDialogForm::NarrowTo(int width)
{
    const QLayout& layout = *mDialog.layout();
    const QMargins margins = layout.contentsMargins();
    const int least = options->minimumSizeHint().width() + margins.left() + margins.right();
    const int excess = layout.totalSizeHint().width() - std::max(width, least);
    if (excess <= 0 || altHint->wordWrap())
        return;
    altHint->setFixedWidth(altHint->sizeHint().width() - excess);
    altHint->setWordWrap(true);
}

QGridLayout* ExportDialogForm::MakeGrid()
{
    auto* grid = new QGridLayout;
    grid->addWidget(pdfSettingsLabel, 0, 0);
    grid->addWidget(pdfSettings, 0, 1, 1, 2);
    grid->addItem(new QSpacerItem(0, cRowGap), 1, 0);
    grid->addWidget(pagesLabel, 2, 0);
    grid->addWidget(allPages, 2, 1);
    grid->addWidget(range, 3, 1);
    grid->addWidget(pageRange, 3, 2);
    grid->addItem(new QSpacerItem(0, cRowGap), 4, 0);
    grid->addWidget(includePackage, 5, 0, 1, 4);
    grid->addWidget(options, 6, 0, 1, 4);
    // The gaps are part of the columns: a gap before the last column, which is empty, would show as a margin.
    const int gap = mDialog.style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing);
    grid->setHorizontalSpacing(0);
    grid->setColumnMinimumWidth(0, pdfSettingsLabel->sizeHint().width() + gap);
    grid->setColumnMinimumWidth(1, range->sizeHint().width() + gap);
    grid->setColumnStretch(2, 1);
    return grid;
}

QBoxLayout* ExportDialogForm::MakeButtonRow()
{
    auto* row = new QHBoxLayout;
    row->setContentsMargins(0, cRowGap, 0, 0);
    row->addWidget(altHint);
    row->addSpacing(cButtonGap);
    row->addWidget(buttons);
    row->addStretch();
    return row;
}
