#pragma once

#include "widgets/GCUSPDFSettingsAdjWdt.h"

#include <QCoreApplication>

class GCPTSaveAsTool;
class GQUICollapsibleFrame;
class HopboxBox;
class PageRangeEdit;
class QBoxLayout;
class QCheckBox;
class QDialogButtonBox;
class QGridLayout;
class QLabel;
class QPushButton;
class QRadioButton;

// The widgets of the selection dialog and their places in it; Qt's parents own them. What they show and do is
// up to the dialog, what is offered at all up to the tool's options.
class ExportDialogForm
{
    Q_DECLARE_TR_FUNCTIONS(GCSPUSaveAsStamplexPDFDialog)

public:
    // Fills the dialog, which has no layout yet.
    ExportDialogForm(QWidget& dialog, const GCPTSaveAsTool& tool);

    // Wraps the hint where the dialog is wider than that many pixels because of it.
    void NarrowTo(int width);

    QLabel* pdfSettingsLabel;
    HopboxBox* pdfSettings;
    QLabel* pagesLabel;
    QRadioButton* allPages;
    QRadioButton* range;
    PageRangeEdit* pageRange;
    QCheckBox* includePackage;
    GQUICollapsibleFrame* options;
    GCUSPDFSettingsAdjWdt* adjustment;
    QLabel* message;
    QLabel* altHint;
    QDialogButtonBox* buttons;
    QPushButton* okButton;

private:
    void CreatePageRange(bool isOffered);
    void CreateOptions(const GCPTSaveAsTool& tool);
    void CreateButtons();
    QGridLayout* MakeGrid();
    QBoxLayout* MakeButtonRow();

    QWidget& mDialog;
};
