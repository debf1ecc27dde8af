#pragma once

#include "widgets/values/AdjustmentValues.h"

#include <QWidget>

class GQUIChainButton;
class GQUIUnitSpinBox;
class QCheckBox;
class QComboBox;
class QGridLayout;
class QLabel;
class QScrollArea;

// What the job options give for the values that the user has not set; empty if that is not known.
struct AdjustmentDefaults
{
    std::array<std::optional<bool>, AdjustmentValues::cMarkCount> marks;
    std::optional<double> weight;  // in points, like all lengths
    std::optional<double> offset;
    std::optional<bool> documentBleed;
    std::array<std::optional<double>, AdjustmentValues::cBleedCount> bleeds;
};

// The panel on which the user adjusts a PDF setting: printer's marks on the left, bleed on the right.
//
// If the job options decide about a value (AdjustmentValues), its check box is partially checked, or its
// field is blank. The context menu of each brings it back to that state.
class GCUSPDFSettingsAdjWdt : public QWidget
{
    Q_OBJECT

public:
    using Values = AdjustmentValues::Values;

    // Controls that are shown only if the host supports them; at first all are shown.
    enum class Control
    {
        cBleedMark,
        cMarkWeight,
        cSlugArea,
        cSpreads
    };

    explicit GCUSPDFSettingsAdjWdt(QWidget* parent = nullptr);
    ~GCUSPDFSettingsAdjWdt() override;

    // After it, nothing is known about what the job options give.
    void Load(const Values& values);

    // Sets what the tips of partially checked boxes and blank fields tell.
    void SetDefaults(const AdjustmentDefaults& defaults);

    // Changes those values that differ from what the panel shows, and removes those that the user has brought
    // back to what the job options say; no other key is changed. So a value without a meaning, or one that
    // the panel doesn't show, stays as it is. If there is no complaint, the panel shows all values that
    // count.
    void Store(Values& values) const;

    // Names the field whose text is not a valid length for it, and what the field accepts; empty when there
    // is no such field. A field that the user can't use doesn't count.
    QString GetComplaint() const;

    void SetShown(Control control, bool isShown);

    // In pixels; higher content can be scrolled.
    void SetMostHeight(int height);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

signals:
    // The complaint may be another one now.
    void Changed();
    // A length beyond a field's range was replaced; the note says which and by what.
    void Corrected(const QString& note);

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    using Marks = std::array<QCheckBox*, AdjustmentValues::cMarkCount>;
    using Bleeds = std::array<GQUIUnitSpinBox*, AdjustmentValues::cBleedCount>;

    void AddMarks(QGridLayout& grid);
    void AddMarkLines(QGridLayout& grid);
    void AddBleed(QGridLayout& grid);
    void AddBleedFields(QGridLayout& grid);
    void AlignRows(QGridLayout& grid);
    void ConnectSignals();
    std::array<GQUIUnitSpinBox*, 1 + AdjustmentValues::cBleedCount> GetLengths() const;

    void OnAllMarksClicked();
    void OnChainClicked();
    void OnBleedChanged(const GQUIUnitSpinBox& changed);
    void ShowAllMarks();
    void ShowBleedChoice();
    void ShowTips();
    void Reset(QWidget& control);

    AdjustmentDefaults mDefaults;
    bool mIsLoading = false;  // the tips are set when everything is loaded
    int mMostHeight = QWIDGETSIZE_MAX;
    QScrollArea* mScroller;
    QWidget* mContent;
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
