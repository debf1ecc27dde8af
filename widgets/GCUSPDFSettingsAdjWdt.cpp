#include "widgets/GCUSPDFSettingsAdjWdt.h"

#include "widgets/GQUIChainButton.h"
#include "widgets/GQUIUnitSpinBox.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QContextMenuEvent>
#include <QGridLayout>
#include <QLabel>
#include <QMenu>
#include <QScrollArea>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>

using AdjustmentValues::cBleedCount;
using AdjustmentValues::cBleedMark;
using AdjustmentValues::cMarkCount;

namespace
{
// The offset counts above 0 only.
constexpr double cLeastOffset = 0.01;
constexpr double cMostOffset = 72;
constexpr double cMostBleed = 432;

// The columns of the panel: two of marks, a gap, three of bleed, and the rest of the width.
enum Column
{
    cMarkLabel,
    cMarkField,
    cColumnGap,
    cBleedLabel,
    cBleedField,
    cChain,
    cRest
};

// Its rows: both sides have a head and five more, then, after a gap, two.
enum Row
{
    cHeadRow,
    cFirstRow,
    cRowGap = cFirstRow + cMarkCount,
    cWeightRow,
    cOffsetRow,
    cSlugRow = cWeightRow,
    cSpreadsRow = cOffsetRow
};

// A check box that leaves what the job options say can be clicked back to that.
void ShowState(QCheckBox& box, std::optional<bool> isOn)
{
    box.setTristate(!isOn);
    box.setCheckState(!isOn ? Qt::PartiallyChecked : (*isOn ? Qt::Checked : Qt::Unchecked));
}

QString GetTextOfUnknown()
{
    return GCUSPDFSettingsAdjWdt::tr("As the job options say");
}

QString GetWeightText(double points)
{
    const bool isHairline = points < 0.25;
    return GCUSPDFSettingsAdjWdt::tr("%1 pt").arg(QLocale().toString(points, 'f', isHairline ? 3 : 2));
}

std::optional<bool> ReadState(const QCheckBox& box)
{
    const Qt::CheckState state = box.checkState();
    return state == Qt::PartiallyChecked ? std::nullopt : std::make_optional(state == Qt::Checked);
}
}  // namespace

GCUSPDFSettingsAdjWdt::GCUSPDFSettingsAdjWdt(QWidget* parent) : QWidget(parent)
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    mScroller = new QScrollArea;
    mScroller->setFrameShape(QFrame::NoFrame);
    mScroller->setFocusPolicy(Qt::NoFocus);
    mScroller->setWidgetResizable(true);
    layout->addWidget(mScroller);
    mContent = new QWidget;
    auto* grid = new QGridLayout(mContent);
    grid->setContentsMargins(0, 0, 0, 0);
    AddMarks(*grid);
    AddMarkLines(*grid);
    AddBleed(*grid);
    AddBleedFields(*grid);
    AlignRows(*grid);
    grid->setColumnMinimumWidth(cColumnGap, fontMetrics().averageCharWidth() * 4);
    grid->setColumnStretch(cMarkField, 1);
    grid->setColumnStretch(cRest, 1000);  // what the panel is too wide
    mScroller->setWidget(mContent);
    ConnectSignals();
    Load({});
}

QSize GCUSPDFSettingsAdjWdt::sizeHint() const
{
    QSize size = mContent->sizeHint();
    if (size.height() > mMostHeight)
        size = {size.width() + mScroller->verticalScrollBar()->sizeHint().width(), mMostHeight};
    return size;
}

void GCUSPDFSettingsAdjWdt::SetMostHeight(int height)
{
    mMostHeight = height;
    updateGeometry();
}

void GCUSPDFSettingsAdjWdt::AddMarks(QGridLayout& grid)
{
    mAllMarks = new QCheckBox(tr("All Printer's &Marks"));
    grid.addWidget(mAllMarks, cHeadRow, cMarkLabel, 1, 2);
    auto* marks = new QVBoxLayout;
    marks->setSpacing(grid.verticalSpacing());
    const int indent = style()->pixelMetric(QStyle::PM_IndicatorWidth) +
                       style()->pixelMetric(QStyle::PM_CheckBoxLabelSpacing);
    marks->setContentsMargins(indent, 0, 0, 0);
    for (int mark = 0; mark < cMarkCount; ++mark) {
        mMarks.at(mark) = new QCheckBox(tr(AdjustmentValues::cMarks.at(mark).text));
        marks->addWidget(mMarks.at(mark));
    }
    marks->addStretch();
    grid.addLayout(marks, cFirstRow, cMarkLabel, cMarkCount, 2);
}

void GCUSPDFSettingsAdjWdt::AddMarkLines(QGridLayout& grid)
{
    mWeightLabel = new QLabel(tr("&Weight:"));
    mWeight = new QComboBox;
    for (const double points : AdjustmentValues::cWeightPoints)
        mWeight->addItem(GetWeightText(points));
    mWeightLabel->setBuddy(mWeight);
    grid.addWidget(mWeightLabel, cWeightRow, cMarkLabel);
    grid.addWidget(mWeight, cWeightRow, cMarkField);

    auto* offsetLabel = new QLabel(tr("Offse&t:"));
    mOffset = new GQUIUnitSpinBox;
    mOffset->SetRangePoints(cLeastOffset, cMostOffset);
    mOffset->setAccessibleName(tr("Offset"));
    offsetLabel->setBuddy(mOffset);
    grid.addWidget(offsetLabel, cOffsetRow, cMarkLabel);
    grid.addWidget(mOffset, cOffsetRow, cMarkField);
}

void GCUSPDFSettingsAdjWdt::AddBleed(QGridLayout& grid)
{
    grid.addWidget(new QLabel(tr("Bleed:")), cHeadRow, cBleedLabel, 1, 3);
    mDocumentBleed = new QCheckBox(tr("&Use Document Bleed Settings"));
    grid.addWidget(mDocumentBleed, cFirstRow, cBleedLabel, 1, 4);
}

void GCUSPDFSettingsAdjWdt::AddBleedFields(QGridLayout& grid)
{
    for (int bleed = 0; bleed < cBleedCount; ++bleed) {
        auto* field = new GQUIUnitSpinBox;
        field->SetRangePoints(0, cMostBleed);
        field->setAccessibleName(tr(AdjustmentValues::cBleeds.at(bleed).name));
        mBleeds.at(bleed) = field;
        auto* label = new QLabel(tr(AdjustmentValues::cBleeds.at(bleed).text));
        label->setBuddy(field);
        grid.addWidget(label, cFirstRow + 1 + bleed, cBleedLabel);
        grid.addWidget(field, cFirstRow + 1 + bleed, cBleedField);
    }
    mChain = new GQUIChainButton;
    mChain->setToolTip(tr("Make all settings the same"));
    mChain->setAccessibleName(mChain->toolTip());
    grid.addWidget(mChain, cFirstRow + 1, cChain, cBleedCount, 1, Qt::AlignVCenter);

    mSlug = new QCheckBox(tr("Include &Slug Area (For Bleed)"));
    grid.addWidget(mSlug, cSlugRow, cBleedLabel, 1, 4);
    mSpreads = new QCheckBox(tr("Pri&nt Spreads"));
    grid.addWidget(mSpreads, cSpreadsRow, cBleedLabel, 1, 4);
}

// The rows of both sides stand side by side. What is not offered leaves no hole.
void GCUSPDFSettingsAdjWdt::AlignRows(QGridLayout& grid)
{
    const int height = mOffset->sizeHint().height();
    for (int row = cHeadRow; row < cRowGap; ++row)
        grid.setRowMinimumHeight(row, height);
    grid.setRowMinimumHeight(cRowGap, fontMetrics().height() / 2);
    for (QCheckBox* mark : mMarks)
        mark->setMinimumHeight(height);
}

// The base hands the focus on while it goes; the panel must not hear of it any more.
GCUSPDFSettingsAdjWdt::~GCUSPDFSettingsAdjWdt()
{
    disconnect(qApp, nullptr, this, nullptr);
}

void GCUSPDFSettingsAdjWdt::ConnectSignals()
{
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
        if (now != nullptr && mContent->isAncestorOf(now))
            mScroller->ensureWidgetVisible(now);
    });
    connect(mAllMarks, &QCheckBox::clicked, this, &GCUSPDFSettingsAdjWdt::OnAllMarksClicked);
    for (QCheckBox* mark : mMarks) {
        connect(mark, &QCheckBox::stateChanged, this, &GCUSPDFSettingsAdjWdt::ShowAllMarks);
        connect(mark, &QCheckBox::stateChanged, this, &GCUSPDFSettingsAdjWdt::ShowTips);
    }
    connect(mWeight, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &GCUSPDFSettingsAdjWdt::ShowTips);
    connect(mDocumentBleed, &QCheckBox::stateChanged, this, &GCUSPDFSettingsAdjWdt::ShowTips);
    connect(mDocumentBleed, &QCheckBox::stateChanged, this, &GCUSPDFSettingsAdjWdt::ShowBleedChoice);
    connect(mChain, &GQUIChainButton::clicked, this, &GCUSPDFSettingsAdjWdt::OnChainClicked);
    connect(mDocumentBleed, &QCheckBox::stateChanged, this, &GCUSPDFSettingsAdjWdt::Changed);
    for (GQUIUnitSpinBox* field : mBleeds)
        connect(field, &GQUIUnitSpinBox::Changed, this, [this, field] { OnBleedChanged(*field); });
    for (GQUIUnitSpinBox* field : GetLengths()) {
        field->SetTextOfNothing(GetTextOfUnknown());
        connect(field, &GQUIUnitSpinBox::Changed, this, &GCUSPDFSettingsAdjWdt::ShowTips);
        connect(field, &GQUIUnitSpinBox::Changed, this, &GCUSPDFSettingsAdjWdt::Changed);
        connect(field, &GQUIUnitSpinBox::Corrected, this, [this, field] {
            emit Corrected(tr("%1: the nearest length that is possible was set, %2.")
                               .arg(field->accessibleName(), field->text()));
        });
    }
}

void GCUSPDFSettingsAdjWdt::Load(const Values& values)
{
    mIsLoading = true;
    for (int mark = 0; mark < cMarkCount; ++mark)
        ShowState(*mMarks.at(mark), AdjustmentValues::GetMark(values, mark));
    ShowAllMarks();
    mWeight->setCurrentIndex(AdjustmentValues::GetMarkWeight(values).value_or(-1));
    mOffset->SetPoints(AdjustmentValues::GetMarkOffset(values));

    for (int bleed = 0; bleed < cBleedCount; ++bleed) {
        const QSignalBlocker blocker(mBleeds.at(bleed));
        mBleeds.at(bleed)->SetPoints(AdjustmentValues::GetBleed(values, bleed));
    }
    ShowState(*mDocumentBleed, AdjustmentValues::UsesDocumentBleed(values));
    ShowBleedChoice();
    mChain->setChecked(std::all_of(mBleeds.begin(), mBleeds.end(), [this](const GQUIUnitSpinBox* field) {
        return field->GetPoints() == mBleeds.front()->GetPoints();
    }));
    mSlug->setChecked(AdjustmentValues::IsSlugIncluded(values));
    mSpreads->setChecked(AdjustmentValues::AreSpreadsPrinted(values));
    mIsLoading = false;
    SetDefaults({});
    emit Changed();
}

void GCUSPDFSettingsAdjWdt::SetDefaults(const AdjustmentDefaults& defaults)
{
    mDefaults = defaults;
    ShowTips();
}

void GCUSPDFSettingsAdjWdt::Store(Values& values) const
{
    std::array<std::optional<bool>, cMarkCount> marks;
    std::transform(mMarks.begin(), mMarks.end(), marks.begin(),
                   [](const QCheckBox* mark) { return ReadState(*mark); });
    AdjustmentValues::SetMarks(values, marks);
    const int weight = mWeight->currentIndex();
    AdjustmentValues::SetMarkWeight(values, weight < 0 ? std::nullopt : std::make_optional(weight));
    AdjustmentValues::SetMarkOffset(values, mOffset->GetPoints());

    const std::optional<bool> usesDocumentBleed = ReadState(*mDocumentBleed);
    for (int bleed = 0; bleed < cBleedCount && usesDocumentBleed; ++bleed)
        AdjustmentValues::SetBleed(values, bleed, mBleeds.at(bleed)->GetPoints());
    AdjustmentValues::SetDocumentBleed(values, usesDocumentBleed);
    AdjustmentValues::SetSlugIncluded(values, mSlug->isChecked());
    AdjustmentValues::SetSpreadsPrinted(values, mSpreads->isChecked());
}

QString GCUSPDFSettingsAdjWdt::GetComplaint() const
{
    for (const GQUIUnitSpinBox* field : GetLengths())
        if (field->isEnabled() && !field->IsAcceptable())
            return tr("%1 takes a length, %2, or nothing.")
                .arg(field->accessibleName(), field->GetRangeText());
    return {};
}

void GCUSPDFSettingsAdjWdt::SetShown(Control control, bool isShown)
{
    switch (control) {
        case Control::cBleedMark:
            mMarks.at(cBleedMark)->setVisible(isShown);
            ShowAllMarks();
            break;
        case Control::cMarkWeight:
            mWeightLabel->setVisible(isShown);
            mWeight->setVisible(isShown);
            break;
        case Control::cSlugArea:
            mSlug->setVisible(isShown);
            break;
        case Control::cSpreads:
            mSpreads->setVisible(isShown);
            break;
    }
}

std::array<GQUIUnitSpinBox*, 1 + cBleedCount> GCUSPDFSettingsAdjWdt::GetLengths() const
{
    std::array<GQUIUnitSpinBox*, 1 + cBleedCount> lengths = {mOffset};
    std::copy(mBleeds.begin(), mBleeds.end(), lengths.begin() + 1);
    return lengths;
}

void GCUSPDFSettingsAdjWdt::OnAllMarksClicked()
{
    const bool areOn = mAllMarks->checkState() != Qt::Unchecked;
    for (QCheckBox* mark : mMarks)
        if (mark->isVisibleTo(this))
            mark->setChecked(areOn);
    ShowAllMarks();
}

void GCUSPDFSettingsAdjWdt::ShowAllMarks()
{
    const auto areAll = [this](Qt::CheckState state) {
        return std::all_of(mMarks.begin(), mMarks.end(), [this, state](const QCheckBox* mark) {
            return !mark->isVisibleTo(this) || mark->checkState() == state;
        });
    };
    mAllMarks->setCheckState(
        areAll(Qt::Checked) ? Qt::Checked : (areAll(Qt::Unchecked) ? Qt::Unchecked : Qt::PartiallyChecked));
}

void GCUSPDFSettingsAdjWdt::OnChainClicked()
{
    if (!mChain->isChecked())
        return;
    for (const GQUIUnitSpinBox* field : mBleeds)
        if (!field->IsAcceptable())
            return mChain->setChecked(false);  // its text would be lost
    for (const GQUIUnitSpinBox* field : mBleeds)
        if (field->GetPoints())
            return OnBleedChanged(*field);
}

void GCUSPDFSettingsAdjWdt::OnBleedChanged(const GQUIUnitSpinBox& changed)
{
    if (changed.GetPoints())
        mDocumentBleed->setChecked(false);  // the own lengths count no other way
    if (!mChain->isChecked())
        return;
    // What is being typed stands: a text that is no length yet, and one that says the same length another
    // way.
    for (GQUIUnitSpinBox* field : mBleeds)
        if (field->IsAcceptable() && field->GetPoints() != changed.GetPoints())
            field->SetPoints(changed.GetPoints());
}

// Where the choice is left to the job options, so are the lengths, whatever they were: none of them is shown.
void GCUSPDFSettingsAdjWdt::ShowBleedChoice()
{
    if (!ReadState(*mDocumentBleed))
        for (GQUIUnitSpinBox* field : mBleeds)
            field->SetPoints({});
    const bool isOwn = mDocumentBleed->checkState() != Qt::Checked;
    for (GQUIUnitSpinBox* field : mBleeds)
        field->setEnabled(isOwn);
    mChain->setEnabled(isOwn);
}

// What is left to the job options tells what they give.
void GCUSPDFSettingsAdjWdt::ShowTips()
{
    if (mIsLoading)
        return;
    const auto describe = [](QWidget& control, const QString& tip) {
        control.setToolTip(tip);
        control.setAccessibleDescription(tip);
    };
    const auto getTip = [](bool isLeft, const QString& given) {
        return !isLeft ? QString()
                       : (given.isEmpty() ? GetTextOfUnknown() : tr("As the job options say: %1").arg(given));
    };
    const auto describeBox = [&](QCheckBox& box, std::optional<bool> given) {
        const QString text = given ? (*given ? tr("on") : tr("off")) : QString();
        describe(box, getTip(!ReadState(box), text));
    };
    const auto describeLength = [&](GQUIUnitSpinBox& field, std::optional<double> given) {
        const QString tip = getTip(!field.GetPoints(), given ? field.GetText(*given) : QString());
        describe(field, tip.isEmpty() ? field.GetRangeTip() : tip + QLatin1Char('\n') + field.GetRangeTip());
    };
    for (int mark = 0; mark < cMarkCount; ++mark)
        describeBox(*mMarks.at(mark), mDefaults.marks.at(mark));
    describeBox(*mDocumentBleed, mDefaults.documentBleed);
    describe(*mWeight, getTip(mWeight->currentIndex() < 0,
                              mDefaults.weight ? GetWeightText(*mDefaults.weight) : QString()));
    describeLength(*mOffset, mDefaults.offset);
    for (int bleed = 0; bleed < cBleedCount; ++bleed)
        describeLength(*mBleeds.at(bleed), mDefaults.bleeds.at(bleed));
}

// The fields for lengths have menus of their own.
void GCUSPDFSettingsAdjWdt::contextMenuEvent(QContextMenuEvent* event)
{
    QWidget* control = childAt(event->pos());
    if (control == nullptr || !control->isEnabled() ||
        (control != mWeight && !qobject_cast<QCheckBox*>(control)) || control == mSlug || control == mSpreads)
        return;
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(GetTextOfUnknown(), this, [this, control] { Reset(*control); });
    menu->popup(event->globalPos());
}

void GCUSPDFSettingsAdjWdt::Reset(QWidget& control)
{
    if (&control == mWeight)
        mWeight->setCurrentIndex(-1);
    else if (&control == mDocumentBleed)
        ShowState(*mDocumentBleed, std::nullopt);
    for (QCheckBox* mark : mMarks)
        if (mark == &control || (mAllMarks == &control && mark->isVisibleTo(this)))
            ShowState(*mark, std::nullopt);
}
