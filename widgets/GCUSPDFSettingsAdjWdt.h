#pragma once

#include "widgets/AdjustmentValues.h"

#include <QWidget>

class GQUIChainButton;
class GQUIUnitSpinBox;
class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;

// The panel on which the user adjusts a PDF setting: printer's marks on the left, bleed on the right.
//
// A value that leaves what the job options say (AdjustmentValues) is shown as a check box that is partially
// checked, or a blank field. A length beyond what a field takes (72 points of offset, 432 of bleed) is blank
// too.
class GCUSPDFSettingsAdjWdt : public QWidget
{
    Q_OBJECT

public:
    using Values = AdjustmentValues::Values;

    // What is shown only where a host can do it; all of them at first.
    enum class Control
    {
        cBleedMark,
        cMarkWeight,
        cSlugArea,
        cSpreads
    };

    explicit GCUSPDFSettingsAdjWdt(QWidget* parent = nullptr);

    void Load(const Values& values);

    // Sets what the panel shows different from what the values say; no other key is set, and none removed. So
    // a value that the panel can't show, or doesn't, stays as it is until the user gives another.
    void Store(Values& values) const;

    void SetShown(Control control, bool isShown);

private:
    using Marks = std::array<QCheckBox*, AdjustmentValues::cMarkCount>;
    using Bleeds = std::array<GQUIUnitSpinBox*, AdjustmentValues::cBleedCount>;

    void AddMarks(QGridLayout& grid);
    void AddMarkLines(QGridLayout& grid);
    void AddBleed(QGridLayout& grid);
    void AddBleedFields(QGridLayout& grid);
    void AlignRows(QGridLayout& grid);
    void ConnectSignals();

    void OnAllMarksClicked();
    void OnChainClicked();
    void OnBleedChanged(double points);
    void ShowAllMarks();
    void ShowBleedChoice();

    QCheckBox* mAllMarks;
    Marks mMarks;
    QLabel* mWeightLabel;
    QComboBox* mWeight;
    GQUIUnitSpinBox* mOffset;
    QCheckBox* mDocumentBleed;
    Bleeds mBleeds;
    GQUIChainButton* mChain;
    QCheckBox* mSlug;
    QCheckBox* mSpreads;
};
