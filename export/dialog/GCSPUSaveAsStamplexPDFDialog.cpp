#include "export/dialog/GCSPUSaveAsStamplexPDFDialog.h"

#include "export/GCPTSaveAsTool.h"
#include "export/PlugInPreferences.h"
#include "foundation/core/GException.h"
#include "foundation/core/GStringSupport.h"
#include "foundation/prefs/GPrefMemoryModule.h"
#include "foundation/strings/GUserMessage.h"
#include "foundation/trace/GTrace.h"
#include "hopbox/HopboxProject.h"
#include "plugin/messages/ErrorText.h"
#include "widgets/GCUSPDFSettingsAdjWdt.h"
#include "widgets/GQUICollapsibleFrame.h"

#include <QApplication>
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QRadioButton>
#include <QRegularExpressionValidator>
#include <QSignalBlocker>
#include <QStyle>

namespace
{
const GBuffer cUserSettings = QByteArrayLiteral("UserSettings");
const GBuffer cIncludesPackage = QByteArrayLiteral("IncludeFilePackage");

constexpr int cAllPagesID = 0;
constexpr int cRangeID = 1;

// Pixels.
constexpr int cRowGap = 10;
constexpr int cButtonGap = 20;
constexpr int cOptionsIndent = 15;

constexpr int cShownCharacters = 30;  // of a Hopbox's text at least, however long the longest is

void ShowError(const GString& title, const GString& text)
{
    GTrace::Error(QStringLiteral("GCSPUSaveAsStamplexPDFDialog"), text);
    if (GUserMessage* message = GUserMessage::GetInstance())
        message->ShowErrorMessage(title, text);
}

bool IsAlt(const QKeyEvent& event)
{
    return event.key() == Qt::Key_Alt && !event.isAutoRepeat();
}

// Whether an event of the keyboard or the mouse shows that Alt is up. Its release alone would not do: with
// Shift down, some desktops call it that of another key, and OK would go on removing.
bool ShowsThatAltIsUp(const QEvent& event)
{
    switch (event.type()) {
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
            if (const auto& key = static_cast<const QKeyEvent&>(event); key.key() == Qt::Key_Alt)
                return event.type() == QEvent::KeyRelease && !key.isAutoRepeat();
            [[fallthrough]];
        case QEvent::MouseButtonPress:
            return !(static_cast<const QInputEvent&>(event).modifiers() & Qt::AltModifier);
        default:
            return false;
    }
}

bool IsEnter(const QKeyEvent& event)
{
    return event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
}

// One press of Enter is one click, however long it is held down.
bool IsRepeatedEnter(const QEvent& event)
{
    if (event.type() != QEvent::KeyPress)
        return false;
    const auto& key = static_cast<const QKeyEvent&>(event);
    return IsEnter(key) && key.isAutoRepeat();
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
    : GQUIWindow(parent, Qt::Dialog | Qt::WindowTitleHint | Qt::CustomizeWindowHint), mTool(tool)
{
    setWindowTitle(tr("Export to Hopbox"));
    CreateWidgets();

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(MakeGrid());
    layout->addWidget(mMessage);
    layout->addLayout(MakeButtonRow());
    layout->addStretch();
    // As wide without the options as with them.
    layout->addStrut(mOptions->minimumSizeHint().width());
    layout->setSizeConstraint(QLayout::SetFixedSize);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFocusPolicy(Qt::StrongFocus);
    SetTabOrder();

    mIncludePackage->setVisible(mTool.GetOption(DialogOption::cFilePackage));
    mAllPages->setChecked(true);
    mPageRange->setEnabled(false);
    const bool hasPages = mTool.GetOption(DialogOption::cPageRange);
    mAllPages->setEnabled(hasPages);
    mRange->setEnabled(hasPages);
    FillPDFSettings();
    ConnectSignals();
    mPDFSettings->setFocus();
}

GCSPUSaveAsStamplexPDFDialog::~GCSPUSaveAsStamplexPDFDialog() = default;

void GCSPUSaveAsStamplexPDFDialog::CreateWidgets()
{
    mHopboxes = new HopboxListModel(this);
    mPDFSettings = new QComboBox(this);
    mPDFSettings->setModel(mHopboxes);
    mPDFSettings->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    mPDFSettings->setMinimumContentsLength(cShownCharacters);
    if (auto* list = qobject_cast<QListView*>(mPDFSettings->view()))
        list->setUniformItemSizes(true);  // a long list opens at once
    mPDFSettingsLabel = new QLabel(tr("&PDF Settings:"), this);
    mPDFSettingsLabel->setBuddy(mPDFSettings);

    CreatePageRange();

    mIncludePackage = new QCheckBox(tr("Include &File Package"), this);
    mIncludePackage->setToolTip(tr("Check this option to deliver an InDesign file Package."));

    CreateOptions();

    mMessage = new QLabel(this);
    mMessage->setAlignment(Qt::AlignHCenter);

    CreateButtons();
}

void GCSPUSaveAsStamplexPDFDialog::CreatePageRange()
{
    mPagesLabel = new QLabel(tr("Pages:"), this);
    mAllPages = new QRadioButton(tr("&All"), this);
    mAllPages->setAccessibleDescription(mPagesLabel->text());
    mRange = new QRadioButton(tr("&Range:"), this);
    mRange->setAccessibleDescription(mPagesLabel->text());

    mPageRange = new QLineEdit(this);
    mPageRange->setPlaceholderText(tr("e.g. 1-5,8,11-13"));
    mPageRange->setAccessibleName(tr("Page range"));
    const QRegularExpression ranges(QStringLiteral("^(\\d+(-\\d+)?)(,\\d+(-\\d+)?)*$"));
    mPageRange->setValidator(new QRegularExpressionValidator(ranges, mPageRange));
}

void GCSPUSaveAsStamplexPDFDialog::CreateOptions()
{
    mOptions = new GQUICollapsibleFrame(tr("&Options"), this);
    auto* content = new QWidget;
    auto* contentLayout = new QVBoxLayout(content);
    contentLayout->setContentsMargins(cOptionsIndent, 0, 0, 0);
    mAdjustment = new GCUSPDFSettingsAdjWdt;
    contentLayout->addWidget(mAdjustment);
    mOptions->SetContent(content);

    auto* line = new QFrame;
    line->setFrameStyle(QFrame::HLine | QFrame::Sunken);
    mOptions->SetHeaderWidget(line, GQUICollapsibleFrame::cShownAlways);
    mOptions->layout()->setContentsMargins(0, 0, 0, 0);
    mOptions->SetCollapsed(true);

    using Control = GCUSPDFSettingsAdjWdt::Control;
    mAdjustment->SetShown(Control::cSlugArea, mTool.GetOption(DialogOption::cSlugArea));
    mAdjustment->SetShown(Control::cSpreads, mTool.GetOption(DialogOption::cSpreads));
    mAdjustment->SetShown(Control::cBleedMark, mTool.GetOption(DialogOption::cBleedMark));
    mAdjustment->SetShown(Control::cMarkWeight, mTool.GetOption(DialogOption::cMarkWeight));
}

void GCSPUSaveAsStamplexPDFDialog::CreateButtons()
{
    mAltHint = new QLabel(tr("Hold down the \"Alt\" key to remove a Hopbox from the list."), this);
    mButtons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    mButtons->button(QDialogButtonBox::Cancel)->setText(tr("Cancel"));
    mOkButton = mButtons->button(QDialogButtonBox::Ok);
    mOkButton->setDefault(true);
    mOkButton->setAccessibleDescription(mAltHint->text());
    for (QAbstractButton* button : mButtons->buttons())
        button->installEventFilter(this);
    // Nothing moves when the button changes its text.
    mOkButton->setText(tr("Remove"));
    mOkButton->setMinimumWidth(mOkButton->sizeHint().width());
    mOkButton->setText(tr("OK"));
}

QGridLayout* GCSPUSaveAsStamplexPDFDialog::MakeGrid()
{
    auto* grid = new QGridLayout;
    grid->addWidget(mPDFSettingsLabel, 0, 0);
    grid->addWidget(mPDFSettings, 0, 1, 1, 2);
    grid->addItem(new QSpacerItem(0, cRowGap), 1, 0);
    grid->addWidget(mPagesLabel, 2, 0);
    grid->addWidget(mAllPages, 2, 1);
    grid->addWidget(mRange, 3, 1);
    grid->addWidget(mPageRange, 3, 2);
    grid->addItem(new QSpacerItem(0, cRowGap), 4, 0);
    grid->addWidget(mIncludePackage, 5, 0, 1, 4);
    grid->addWidget(mOptions, 6, 0, 1, 4);
    // The gaps are part of the columns: a gap before the last column, which is empty, would show as a margin.
    const int gap = style()->pixelMetric(QStyle::PM_LayoutHorizontalSpacing);
    grid->setHorizontalSpacing(0);
    grid->setColumnMinimumWidth(0, mPDFSettingsLabel->sizeHint().width() + gap);
    grid->setColumnMinimumWidth(1, mRange->sizeHint().width() + gap);
    grid->setColumnStretch(2, 1);
    return grid;
}

QBoxLayout* GCSPUSaveAsStamplexPDFDialog::MakeButtonRow()
{
    auto* row = new QHBoxLayout;
    row->setContentsMargins(0, cRowGap, 0, 0);
    row->addWidget(mAltHint);
    row->addSpacing(cButtonGap);
    row->addWidget(mButtons);
    row->addStretch();
    return row;
}

void GCSPUSaveAsStamplexPDFDialog::SetTabOrder()
{
    QWidget* const order[] = {mPDFSettings, mAllPages, mRange, mPageRange, mIncludePackage};
    for (size_t index = 1; index < std::size(order); ++index)
        setTabOrder(order[index - 1], order[index]);
}

void GCSPUSaveAsStamplexPDFDialog::ConnectSignals()
{
    auto* pages = new QButtonGroup(this);
    pages->addButton(mAllPages, cAllPagesID);
    pages->addButton(mRange, cRangeID);
    connect(pages, QOverload<QAbstractButton*>::of(&QButtonGroup::buttonClicked), this,
            [this, pages](QAbstractButton* button) { OnRadioGroupClicked(pages->id(button)); });
    connect(mPageRange, &QLineEdit::textChanged, this, &GCSPUSaveAsStamplexPDFDialog::Update);
    connect(mAdjustment, &GCUSPDFSettingsAdjWdt::Changed, this, &GCSPUSaveAsStamplexPDFDialog::Update);
    connect(mAdjustment, &GCUSPDFSettingsAdjWdt::Corrected, this, &GCSPUSaveAsStamplexPDFDialog::ShowNote);

    connect(mButtons, &QDialogButtonBox::accepted, this, &GCSPUSaveAsStamplexPDFDialog::OkOrRemoveClicked);
    connect(mButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(mPDFSettings, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &GCSPUSaveAsStamplexPDFDialog::OnPDFSettingsSelectionChanged);
    connect(mIncludePackage, &QCheckBox::toggled, this,
            &GCSPUSaveAsStamplexPDFDialog::OnIncludeFilePackageToggled);
    connect(mOptions, &GQUICollapsibleFrame::Clicked, this,
            &GCSPUSaveAsStamplexPDFDialog::OnCollapsibleButtonClicked);
    connect(this, &QDialog::accepted, this, &GCSPUSaveAsStamplexPDFDialog::OnExit);
    connect(this, &QDialog::rejected, this, &GCSPUSaveAsStamplexPDFDialog::OnExit);
}

void GCSPUSaveAsStamplexPDFDialog::FillPDFSettings()
{
    {
        const QSignalBlocker blocker(mPDFSettings);
        ReadHopboxes();
        if (mPDFSettings->count() > 0)
            mPDFSettings->setCurrentIndex(
                std::max(0, mHopboxes->GetList().FindKey(PlugInPreferences::GetLastSelection())));
    }
    OnPDFSettingsSelectionChanged(mPDFSettings->currentIndex());
}

void GCSPUSaveAsStamplexPDFDialog::ReadHopboxes()
{
    mHopboxes->SetList({});
    try {
        mHopboxes->SetList(HopboxList::Read());
    } catch (const GException& error) {
        ShowError(tr("Export as Stamplex PDF Error"), ErrorText::Describe(error));
    }
    if (const QStringList& keys = mHopboxes->GetList().GetUnreadableKeys(); !keys.isEmpty())
        ShowMissing(keys);
}

void GCSPUSaveAsStamplexPDFDialog::ShowMissing(const QStringList& keys)
{
    ShowError(tr("Export as Stamplex PDF Error"),
              tr("PDF settings are missing for %1. Launch the Hopbox manually and try again.")
                  .arg(keys.join(QStringLiteral(", "))));
}

const HopboxList::Item* GCSPUSaveAsStamplexPDFDialog::GetItem(int index) const
{
    return index < 0 ? nullptr : &mHopboxes->GetList().GetItems().at(static_cast<size_t>(index));
}

void GCSPUSaveAsStamplexPDFDialog::OnPDFSettingsSelectionChanged(int index)
{
    const QSignalBlocker blocker(mIncludePackage);
    const HopboxList::Item* item = GetItem(index);
    PlugInPreferences::SetLastSelection(item == nullptr ? GString() : item->key);
    mIsAdjustable = false;
    // The list may be too narrow for the text.
    mPDFSettings->setToolTip(mPDFSettings->currentData(Qt::ToolTipRole).toString());
    if (item == nullptr) {
        mOptions->hide();
        mIncludePackage->hide();
        mIncludePackage->setChecked(false);
        Update();
        return;
    }
    // A project that can't be read gives no settings; choosing it fails with the export's alert.
    mTool.SelectPDFSetting(item->key, item->record);
    const GPrefGroup settings = GetPlugInSettings(mTool);
    mIsAdjustable = IsOn(settings, cUserSettings);
    if (mIsAdjustable)
        mAdjustment->Load(settings);
    mOptions->setVisible(mIsAdjustable);
    Update();
    if (!mTool.GetOption(DialogOption::cFilePackage))
        return;
    mIncludePackage->setVisible(mIsAdjustable);
    mIncludePackage->setChecked(ChoosePackage(*item, mIsAdjustable, IsOn(settings, cIncludesPackage)));
}

// Whether the file package is included: what the user chose for this Hopbox the last time, or else, and where
// it is not the user's choice, the Hopbox's own setting.
bool GCSPUSaveAsStamplexPDFDialog::ChoosePackage(const HopboxList::Item& item, bool isUserChoice,
                                                 bool isDefault)
{
    if (!isUserChoice)
        return isDefault;
    const GString& group = item.record.GetPreferenceGroup(item.key);
    if (PlugInPreferences::HasPackageChoice(group))
        return PlugInPreferences::GetPackageChoice(group);
    PlugInPreferences::SetPackageChoice(group, isDefault);
    return isDefault;
}

void GCSPUSaveAsStamplexPDFDialog::OnIncludeFilePackageToggled(bool isChecked)
{
    if (const HopboxList::Item* item = GetItem(mPDFSettings->currentIndex()))
        PlugInPreferences::SetPackageChoice(item->record.GetPreferenceGroup(item->key), isChecked);
}

void GCSPUSaveAsStamplexPDFDialog::OnRadioGroupClicked(int id)
{
    mPageRange->setEnabled(id == cRangeID);
    Update();
}

void GCSPUSaveAsStamplexPDFDialog::OnCollapsibleButtonClicked()
{
    adjustSize();
}

// What keeps the choices from being exported; empty when they can be.
QString GCSPUSaveAsStamplexPDFDialog::GetComplaint() const
{
    if (mPDFSettings->count() == 0)
        return tr("No PDF Settings found");
    if (mRange->isChecked() && !mPageRange->text().isEmpty() && !mPageRange->hasAcceptableInput())
        return tr("The page range is not complete.");
    return mIsAdjustable ? mAdjustment->GetComplaint() : QString();
}

void GCSPUSaveAsStamplexPDFDialog::Update()
{
    const QString complaint = GetComplaint();
    mPDFSettings->setAccessibleDescription(mPDFSettings->count() == 0 ? complaint : QString());
    UpdateOkButton();
    ShowNote(complaint);
}

// What can't be exported doesn't keep a Hopbox from being removed.
void GCSPUSaveAsStamplexPDFDialog::UpdateOkButton()
{
    mOkButton->setEnabled(mMode == OkMode::cRemove ? mPDFSettings->count() > 0 : GetComplaint().isEmpty());
}

// The note stands until the next change.
void GCSPUSaveAsStamplexPDFDialog::ShowNote(const QString& note)
{
    mMessage->setText(note);
    mMessage->setVisible(!note.isEmpty());
}

void GCSPUSaveAsStamplexPDFDialog::OkOrRemoveClicked()
{
    if (mMode == OkMode::cRemove)
        RemoveSelected();
    else
        Submit();
}

void GCSPUSaveAsStamplexPDFDialog::RemoveSelected()
{
    const HopboxList::Item* item = GetItem(mPDFSettings->currentIndex());
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
    if (mRange->isChecked())
        mTool.SetPageRange(mPageRange->text());
    StoreChoices();
    mTool.Submit();
}

void GCSPUSaveAsStamplexPDFDialog::StoreChoices()
{
    GPrefGroup settings = GetPlugInSettings(mTool);
    if (mIsAdjustable)
        mAdjustment->Store(settings);
    settings.Insert(cIncludesPackage, GStringSupport::FromBool(mIncludePackage->isChecked()));
    const GBuffer& group = HopboxProject::GetPlugInGroup();
    mTool.GetSettings().RemoveGroup(group);  // what was brought back to the job options is no longer there
    for (const auto& entry : settings)
        mTool.GetSettings().Set(group, entry.key, entry.value);
}

void GCSPUSaveAsStamplexPDFDialog::OnExit()
{
    try {
        PlugInPreferences::Prune(HopboxList::Read().GetPreferenceGroups());
    } catch (const GException& error) {
        GTrace::Error(QStringLiteral("GCSPUSaveAsStamplexPDFDialog::OnExit"), error.GetDescription());
    }
}

void GCSPUSaveAsStamplexPDFDialog::SetMode(OkMode mode)
{
    if (mode == mMode)
        return;
    mMode = mode;
    mOkButton->setText(mode == OkMode::cRemove ? tr("Remove") : tr("OK"));
    UpdateOkButton();
    // What shows that the key is up may go to an open list or another window of ours.
    if (mode == OkMode::cRemove) {
        qApp->installEventFilter(this);
    } else {
        qApp->removeEventFilter(this);
        GiveFocusBack();
    }
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

bool GCSPUSaveAsStamplexPDFDialog::event(QEvent* event)
{
    if (event->type() == QEvent::WindowDeactivate)
        SetMode(OkMode::cOK);
    return GQUIWindow::event(event);
}

bool GCSPUSaveAsStamplexPDFDialog::eventFilter(QObject* watched, QEvent* event)
{
    if (qobject_cast<QPushButton*>(watched) != nullptr && IsRepeatedEnter(*event))
        return true;
    if (ShowsThatAltIsUp(*event))
        SetMode(OkMode::cOK);
    return GQUIWindow::eventFilter(watched, event);
}

void GCSPUSaveAsStamplexPDFDialog::keyPressEvent(QKeyEvent* event)
{
    if (IsRepeatedEnter(*event))
        return;
    if (IsAlt(*event)) {
        SetMode(OkMode::cRemove);
        GQUIWindow::keyPressEvent(event);
        TakeFocus();
    } else if (mMode == OkMode::cRemove && IsEnter(*event)) {
        mOkButton->click();  // a dialog knows Enter without Alt only
    } else if (mMode == OkMode::cRemove && event->key() != Qt::Key_Alt && mFocusBeforeAlt &&
               focusWidget() == this) {
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
    if (IsAlt(*event))
        SetMode(OkMode::cOK);
    GQUIWindow::keyReleaseEvent(event);
}

// The dialog takes the focus while Alt is down, but is no stop on the way of the Tab key.
bool GCSPUSaveAsStamplexPDFDialog::focusNextPrevChild(bool next)
{
    return GQUIWindow::focusNextPrevChild(next) &&
           (focusWidget() != this || GQUIWindow::focusNextPrevChild(next));
}
