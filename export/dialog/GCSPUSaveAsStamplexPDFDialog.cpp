#include "export/dialog/GCSPUSaveAsStamplexPDFDialog.h"

#include "export/GCPTSaveAsTool.h"
#include "export/PlugInPreferences.h"
#include "export/dialog/HopboxBox.h"
#include "export/dialog/JobOptionsDefaults.h"
#include "export/dialog/OkButtonMode.h"
#include "export/dialog/PageRangeEdit.h"
#include "foundation/core/GException.h"
#include "foundation/core/GStringSupport.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "foundation/strings/GUserMessage.h"
#include "foundation/trace/GTrace.h"
#include "hopbox/HopboxProject.h"
#include "plugin/messages/ErrorText.h"
#include "widgets/GQUICollapsibleFrame.h"
#include "widgets/GQUIEnterOnce.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLayout>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QSignalBlocker>
#include <QTimer>
#include <QWindow>

namespace
{
const GBuffer cUserSettings = QByteArrayLiteral("UserSettings");
const GBuffer cIncludesPackage = QByteArrayLiteral("IncludeFilePackage");

constexpr int cAllPagesID = 0;
constexpr int cRangeID = 1;

void ShowError(const GString& title, const GString& text)
{
    GTrace::Error(QStringLiteral("GCSPUSaveAsStamplexPDFDialog"), text);
    if (GUserMessage* message = GUserMessage::GetInstance())
        message->ShowErrorMessage(title, text);
}

bool IsEnter(const QKeyEvent& event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

bool IsOn(const GPrefGroup& settings, const GBuffer& key)
{
    const GString* value = settings.Find(key);
    return value != nullptr && GStringSupport::ToBool(*value);
}

GPrefGroup GetPlugInSettings(GCPTSaveAsTool& tool)
{
    GPrefGroup settings;
    tool.GetSettings().GetGroupPreferences(HopboxProject::GetPlugInGroup(), settings);
    return settings;
}
}  // namespace

GCSPUSaveAsStamplexPDFDialog::GCSPUSaveAsStamplexPDFDialog(QWidget* parent, GCPTSaveAsTool& tool)
    : GQUIWindow(parent, Qt::Dialog | Qt::WindowTitleHint | Qt::CustomizeWindowHint),
      mTool(tool),
      mForm(*this, tool),
      mMode(new OkButtonMode(*this, *mForm.okButton))
{
    setWindowTitle(tr("Export to Hopbox"));
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFocusPolicy(Qt::StrongFocus);
    GQUIEnterOnce(*this);
    FillPDFSettings();
    ConnectSignals();
    mForm.pdfSettings->setFocus();
}

// The base hides the window, which ends Remove: nobody is there to be told then.
GCSPUSaveAsStamplexPDFDialog::~GCSPUSaveAsStamplexPDFDialog()
{
    delete mMode;
}

void GCSPUSaveAsStamplexPDFDialog::ConnectSignals()
{
    auto* pages = new QButtonGroup(this);
    pages->addButton(mForm.allPages, cAllPagesID);
    pages->addButton(mForm.range, cRangeID);
    connect(pages, QOverload<QAbstractButton*>::of(&QButtonGroup::buttonClicked), this,
            [this, pages](QAbstractButton* button) { OnRadioGroupClicked(pages->id(button)); });
    connect(mForm.pageRange, &QLineEdit::textChanged, this, &GCSPUSaveAsStamplexPDFDialog::Update);
    connect(mForm.adjustment, &GCUSPDFSettingsAdjWdt::Changed, this, &GCSPUSaveAsStamplexPDFDialog::Update);
    connect(mForm.adjustment, &GCUSPDFSettingsAdjWdt::Corrected, this,
            &GCSPUSaveAsStamplexPDFDialog::OnCorrected);

    connect(mMode, &OkButtonMode::Changed, this, &GCSPUSaveAsStamplexPDFDialog::OnModeChanged);
    connect(mForm.pdfSettings, &HopboxBox::RemoveChosen, this, &GCSPUSaveAsStamplexPDFDialog::RemoveSelected);
    connect(mForm.buttons, &QDialogButtonBox::accepted, this,
            &GCSPUSaveAsStamplexPDFDialog::OkOrRemoveClicked);
    connect(mForm.buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(mForm.pdfSettings, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &GCSPUSaveAsStamplexPDFDialog::OnPDFSettingsSelectionChanged);
    connect(mForm.includePackage, &QCheckBox::toggled, this,
            &GCSPUSaveAsStamplexPDFDialog::OnIncludeFilePackageToggled);
    connect(mForm.options, &GQUICollapsibleFrame::Clicked, this,
            &GCSPUSaveAsStamplexPDFDialog::OnCollapsibleButtonClicked);
    connect(this, &QDialog::accepted, this, &GCSPUSaveAsStamplexPDFDialog::OnExit);
    connect(this, &QDialog::rejected, this, &GCSPUSaveAsStamplexPDFDialog::OnExit);
}

void GCSPUSaveAsStamplexPDFDialog::FillPDFSettings()
{
    {
        const QSignalBlocker blocker(mForm.pdfSettings);
        ReadHopboxes();
        if (mForm.pdfSettings->count() > 0)
            mForm.pdfSettings->setCurrentIndex(
                std::max(0, mForm.pdfSettings->GetList().FindKey(PlugInPreferences::GetLastSelection())));
    }
    OnPDFSettingsSelectionChanged(mForm.pdfSettings->currentIndex());
}

void GCSPUSaveAsStamplexPDFDialog::ReadHopboxes()
{
    HopboxList list;
    try {
        list = HopboxList::Read();
    } catch (const GException& error) {
        ShowError(tr("Export as Stamplex PDF Error"), ErrorText::Describe(error));
    }
    mForm.pdfSettings->SetList(std::move(list));
    if (const QStringList& keys = mForm.pdfSettings->GetList().GetUnreadableKeys(); !keys.isEmpty())
        ShowMissing(keys);
}

void GCSPUSaveAsStamplexPDFDialog::ShowMissing(const QStringList& keys)
{
    ShowError(tr("Export as Stamplex PDF Error"),
              tr("PDF settings are missing for %1. Launch the Hopbox manually and try again.")
                  .arg(keys.join(QStringLiteral(", "))));
}

void GCSPUSaveAsStamplexPDFDialog::OnPDFSettingsSelectionChanged(int)
{
    const QSignalBlocker blocker(mForm.includePackage);
    const HopboxList::Item* item = mForm.pdfSettings->GetCurrentItem();
    if (item != nullptr || mForm.pdfSettings->GetList().IsWhole())
        PlugInPreferences::SetLastSelection(item == nullptr ? GString() : item->key);
    mIsAdjustable = false;
    mForm.pdfSettings->ShowCurrentTip();
    if (item == nullptr) {
        mForm.options->hide();
        mForm.includePackage->hide();
        mForm.includePackage->setChecked(false);
        mForm.pdfSettings->setAccessibleDescription(GetComplaint());
        Update();
        return;
    }
    // A project that can't be read gives no settings; choosing it fails with the export's alert.
    const HopboxRecord record = item->GetRecord();
    static_cast<void>(mTool.SelectPDFSetting(item->key, record));
    const GPrefGroup settings = GetPlugInSettings(mTool);
    mIsAdjustable = IsOn(settings, cUserSettings);
    if (mIsAdjustable)
        mForm.adjustment->Load(settings);
    mForm.options->setVisible(mIsAdjustable);
    mHasDefaults = false;
    ShowDefaults();
    Update();
    if (!mTool.GetOption(DialogOption::cFilePackage))
        return;
    mForm.includePackage->setVisible(mIsAdjustable);
    mForm.includePackage->setChecked(
        ChoosePackage(record.GetPreferenceGroup(item->key), mIsAdjustable, IsOn(settings, cIncludesPackage)));
}

// Whether the file package is included: what the user chose for this Hopbox the last time, or else, and where
// it is not the user's choice, the Hopbox's own setting.
bool GCSPUSaveAsStamplexPDFDialog::ChoosePackage(const GString& group, bool isUserChoice, bool isDefault)
{
    if (!isUserChoice)
        return isDefault;
    if (PlugInPreferences::HasPackageChoice(group))
        return PlugInPreferences::GetPackageChoice(group);
    PlugInPreferences::SetPackageChoice(group, isDefault);
    return isDefault;
}

void GCSPUSaveAsStamplexPDFDialog::OnIncludeFilePackageToggled(bool isChecked)
{
    if (const HopboxList::Item* item = mForm.pdfSettings->GetCurrentItem())
        PlugInPreferences::SetPackageChoice(item->GetRecord().GetPreferenceGroup(item->key), isChecked);
}

void GCSPUSaveAsStamplexPDFDialog::OnRadioGroupClicked(int id)
{
    mForm.pageRange->setEnabled(id == cRangeID);
    Update();
}

void GCSPUSaveAsStamplexPDFDialog::OnCollapsibleButtonClicked()
{
    ShowDefaults();
    adjustSize();
}

void GCSPUSaveAsStamplexPDFDialog::showEvent(QShowEvent* event)
{
    windowHandle()->installEventFilter(this);
    connect(screen(), &QScreen::availableGeometryChanged, this, &GCSPUSaveAsStamplexPDFDialog::KeepOnScreen,
            Qt::UniqueConnection);
    GQUIWindow::showEvent(event);
}

void GCSPUSaveAsStamplexPDFDialog::resizeEvent(QResizeEvent* event)
{
    GQUIWindow::resizeEvent(event);
    KeepOnScreen();
}

// A window manager may give the frame, or another one, after Qt has looked at it, and Qt is not told: it
// looks again when the window system has carried out a change of size. Then the window is exposed.
bool GCSPUSaveAsStamplexPDFDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Expose && windowHandle()->frameMargins() != mFrame)
        KeepOnScreen();
    return GQUIWindow::eventFilter(watched, event);
}

// OK and Cancel are always within reach: the dialog stays on its screen, what is too high for that scrolls,
// and what is too wide wraps.
void GCSPUSaveAsStamplexPDFDialog::KeepOnScreen()
{
    mFrame = windowHandle() == nullptr ? QMargins() : windowHandle()->frameMargins();
    const QRect room = screen()->availableGeometry().marginsRemoved(mFrame);
    mForm.NarrowTo(room.width());
    const int rest = layout()->totalSizeHint().height() - mForm.adjustment->sizeHint().height();
    if (!mForm.options->isHidden() && !mForm.options->IsCollapsed())
        mForm.adjustment->SetMostHeight(room.height() - rest);
    if (!isVisible())
        return;
    const QPoint most = room.bottomRight() + QPoint(1, 1) - QPoint(width(), height());
    const QPoint place = geometry().topLeft();
    const QPoint kept(std::max(room.left(), std::min(place.x(), most.x())),
                      std::max(room.top(), std::min(place.y(), most.y())));
    move(pos() + kept - place);  // pos() may be that of an older frame
}

// Once for each selection, and only for those who look at the options: the project's archive is opened for
// it.
void GCSPUSaveAsStamplexPDFDialog::ShowDefaults()
{
    if (mHasDefaults || !mIsAdjustable || mForm.options->IsCollapsed())
        return;
    mHasDefaults = true;
    mForm.adjustment->SetDefaults(ReadJobOptionsDefaults(mForm.pdfSettings->GetCurrentItem()->GetRecord()));
}

// What keeps the choices from being exported; empty when they can be.
QString GCSPUSaveAsStamplexPDFDialog::GetComplaint() const
{
    if (mForm.pdfSettings->count() == 0)
        return tr("No PDF Settings found");
    const QString complaint = mForm.range->isChecked() ? mForm.pageRange->GetComplaint() : QString();
    return complaint.isEmpty() && mIsAdjustable ? mForm.adjustment->GetComplaint() : complaint;
}

void GCSPUSaveAsStamplexPDFDialog::Update()
{
    UpdateOkButton();
    ShowNote(GetComplaint());
}

// The press of the mouse that left the field may be on the OK button: a length that nobody has seen yet is
// not exported by it.
void GCSPUSaveAsStamplexPDFDialog::OnCorrected(const QString& note)
{
    const QString complaint = GetComplaint();  // of another field
    ShowNote(complaint.isEmpty() ? note : complaint);
    mForm.okButton->setEnabled(false);
    QTimer::singleShot(0, this, &GCSPUSaveAsStamplexPDFDialog::UpdateOkButton);
}

// What can't be exported doesn't keep a Hopbox from being removed.
void GCSPUSaveAsStamplexPDFDialog::UpdateOkButton()
{
    mForm.okButton->setEnabled(IsRemoving() ? mForm.pdfSettings->count() > 0 : GetComplaint().isEmpty());
}

// The note stands until the next change.
void GCSPUSaveAsStamplexPDFDialog::ShowNote(const QString& note)
{
    mForm.message->setText(note);
    mForm.message->setVisible(!note.isEmpty());
}

void GCSPUSaveAsStamplexPDFDialog::OkOrRemoveClicked()
{
    if (IsRemoving())
        RemoveSelected();
    else
        Submit();
}

void GCSPUSaveAsStamplexPDFDialog::RemoveSelected()
{
    const HopboxList::Item* item = mForm.pdfSettings->GetCurrentItem();
    if (item == nullptr)
        return;
    if (HopboxList::Withdraw(item->key))
        FillPDFSettings();
    else
        ShowError(tr("Export as Stamplex PDF error"), tr("Unable to remove selected PDF setting."));
}

// The export runs after the dialog has gone from the screen, but within its modal time.
void GCSPUSaveAsStamplexPDFDialog::Submit()
{
    accept();
    if (mForm.range->isChecked())
        mTool.SetPageRange(mForm.pageRange->text());
    StoreChoices();
    mTool.Submit();
}

void GCSPUSaveAsStamplexPDFDialog::StoreChoices()
{
    GPrefGroup settings = GetPlugInSettings(mTool);
    if (mIsAdjustable)
        mForm.adjustment->Store(settings);
    settings.Insert(cIncludesPackage, GStringSupport::FromBool(mForm.includePackage->isChecked()));
    const GBuffer& group = HopboxProject::GetPlugInGroup();
    mTool.GetSettings().RemoveGroup(group);  // what was brought back to the job options is no longer there
    for (const auto& entry : settings)
        mTool.GetSettings().Set(group, entry.key, entry.value);
}

// What was chosen for a Hopbox is forgotten with it, but not when nobody knows whether it is still there.
void GCSPUSaveAsStamplexPDFDialog::OnExit()
{
    try {
        if (const HopboxList list = HopboxList::Read(); list.IsWhole())
            PlugInPreferences::Prune(list.GetPreferenceGroups());
    } catch (const GException& error) {
        GTrace::Error(QStringLiteral("GCSPUSaveAsStamplexPDFDialog::OnExit"), error.GetDescription());
    }
    PlugInPreferences::Flush();
}

bool GCSPUSaveAsStamplexPDFDialog::IsRemoving() const
{
    return mMode->Get() == OkButtonMode::Mode::cRemove;
}

void GCSPUSaveAsStamplexPDFDialog::OnModeChanged()
{
    UpdateOkButton();
    if (!IsRemoving())
        GiveFocusBack();
}

void GCSPUSaveAsStamplexPDFDialog::TakeFocus()
{
    if (focusWidget() != this)
        mFocusBeforeAlt = focusWidget();
    setFocus(Qt::ActiveWindowFocusReason);
}

void GCSPUSaveAsStamplexPDFDialog::GiveFocusBack()
{
    QWidget* widget = mFocusBeforeAlt;
    mFocusBeforeAlt.clear();
    if (widget != nullptr && widget->isVisible() && focusWidget() == this)
        widget->setFocus(Qt::ActiveWindowFocusReason);
}

void GCSPUSaveAsStamplexPDFDialog::keyPressEvent(QKeyEvent* event)
{
    if (mMode->TakePress(*event)) {
        GQUIWindow::keyPressEvent(event);
        TakeFocus();
    } else if (IsRemoving() && IsEnter(*event)) {
        mForm.okButton->click();  // a dialog knows Enter without Alt only
    } else if (IsRemoving() && event->key() != Qt::Key_Alt && mFocusBeforeAlt && focusWidget() == this) {
        // A key with Alt, such as Down to open a list, is meant for the widget that had the focus. What it
        // has no use for comes back here.
        QWidget* widget = mFocusBeforeAlt;
        GiveFocusBack();
        QApplication::sendEvent(widget, event);
    } else {
        GQUIWindow::keyPressEvent(event);
    }
}

void GCSPUSaveAsStamplexPDFDialog::keyReleaseEvent(QKeyEvent* event)
{
    mMode->TakeRelease(*event);
    GQUIWindow::keyReleaseEvent(event);
}

// The dialog takes the focus while Alt is down, but is no stop on the way of the Tab key.
bool GCSPUSaveAsStamplexPDFDialog::focusNextPrevChild(bool next)
{
    return GQUIWindow::focusNextPrevChild(next) &&
           (focusWidget() != this || GQUIWindow::focusNextPrevChild(next));
}
