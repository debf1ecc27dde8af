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

// What the job options give for the values that the user has not set; empty where that is not known.
struct AdjustmentDefaults
{
    std::array<std::optional<bool>, AdjustmentValues::cMarkCount> marks;
    std::optional<double> weight;  // points, as all lengths
    std::optional<double> offset;
    std::optional<bool> documentBleed;
    std::array<std::optional<double>, AdjustmentValues::cBleedCount> bleeds;
};

// The panel on which the user adjusts a PDF setting: printer's marks on the left, bleed on the right.
//
// A value that leaves what the job options say (AdjustmentValues) is shown as a check box that is partially
// checked, or a blank field, and each can be brought back to that by its context menu.
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
    ~GCUSPDFSettingsAdjWdt() override;

    // Nothing is known then of what the job options give.
    void Load(const Values& values);

    // What the tips of partially checked boxes and blank fields tell.
    void SetDefaults(const AdjustmentDefaults& defaults);

    // Sets what the panel shows different from what the values say, and removes what the user has brought
    // back to what the job options say; no other key is touched. So a value that says nothing, or that the
    // panel doesn't show, stays as it is. Without a complaint, all that counts is shown.
    void Store(Values& values) const;

    // Which field has a text that is no length for it, and what it takes; empty when there is none. A field
    // that is not open to the user doesn't count.
    QString GetComplaint() const;

    void SetShown(Control control, bool isShown);

    // Pixels; a content that is higher scrolls.
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
    bool mIsLoading = false;  // the tips follow when all is loaded
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
