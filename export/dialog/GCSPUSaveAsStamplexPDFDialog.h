#pragma once

#include "export/dialog/ExportDialogForm.h"
#include "export/dialog/HopboxList.h"
#include "widgets/GQUIWindow.h"

#include <QPointer>

class GCPTSaveAsTool;
class OkButtonMode;

// The dialog in which the user chooses a Hopbox for an export, under the name of its PDF settings, and what
// the export is to hold. OK closes it and runs the export of the tool. What is offered beside the list is up
// to the tool's options and to the chosen Hopbox's settings.
//
// While the Alt key is down, the OK button reads "Remove" and withdraws the selected Hopbox from the list;
// the dialog stays open.
//
// The last choice, and for each Hopbox whether its file package was wanted, are kept in PlugInPreferences.
// For the main thread.
class GCSPUSaveAsStamplexPDFDialog : public GQUIWindow
{
    Q_OBJECT

public:
    // Lists the Hopboxes; alerts about those that can't be read come before the dialog is seen. The tool
    // outlives the dialog.
    GCSPUSaveAsStamplexPDFDialog(QWidget* parent, GCPTSaveAsTool& tool);
    ~GCSPUSaveAsStamplexPDFDialog() override;

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private slots:
    void OkOrRemoveClicked();
    void OnPDFSettingsSelectionChanged(int index);
    void OnRadioGroupClicked(int id);
    void OnCollapsibleButtonClicked();
    void OnIncludeFilePackageToggled(bool isChecked);
    void OnExit();

private:
    void ConnectSignals();

    void FillPDFSettings();
    void ReadHopboxes();
    void ShowDefaults();
    void ShowMissing(const QStringList& keys);
    [[nodiscard]] static bool ChoosePackage(const GString& group, bool isUserChoice, bool isDefault);
    QString GetComplaint() const;
    void Update();
    void UpdateOkButton();
    void OnCorrected(const QString& note);
    void ShowNote(const QString& note);

    void RemoveSelected();
    void Submit();
    void StoreChoices();

    void KeepOnScreen();

    bool IsRemoving() const;
    void OnModeChanged();
    void TakeFocus();
    void GiveFocusBack();

    GCPTSaveAsTool& mTool;
    ExportDialogForm mForm;
    OkButtonMode* mMode;
    bool mIsAdjustable = false;  // the selected Hopbox lets the user adjust the options
    bool mHasDefaults = false;   // of the selected Hopbox's job options
    QMargins mFrame;             // within which the dialog was kept on its screen
    QPointer<QWidget> mFocusBeforeAlt;
};
