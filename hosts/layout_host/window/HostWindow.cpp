#include "hosts/layout_host/window/HostWindow.h"

#include "hosts/layout_host/window/DocumentView.h"
#include "hosts/scribus/panels/BookPanel.h"
#include "hosts/scribus/panels/FileQuestions.h"
#include "hosts/scribus/panels/ReportPanel.h"
#include "plugin/host/CActionComponent.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileInfo>
#include <QGroupBox>
#include <QListWidget>
#include <QLocale>
#include <QMenuBar>
#include <QSplitter>
#include <QVBoxLayout>

namespace
{
constexpr int cReportHeight = 180;  // in pixels; the user may change it

// Puts a widget under a title.
QGroupBox* MakeGroup(const QString& title, QWidget* content)
{
    auto* group = new QGroupBox(title);
    auto* layout = new QVBoxLayout(group);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(content);
    return group;
}

ClassID GetLocalUnit()
{
    return QLocale().measurementSystem() == QLocale::MetricSystem ? HostUnitID::cMillimetres
                                                                  : HostUnitID::cInches;
}

// Does what Scribus takes its time for, while the pointer shows that it is at work.
template <class Work>
GResult WhileWaiting(const Work& work)
{
    QApplication::setOverrideCursor(Qt::WaitCursor);
    const GResult result = work();
    QApplication::restoreOverrideCursor();
    return result;
}
}  // namespace

HostWindow::HostWindow(const ScribusSetup& setup) : mHost(setup), mFrontend(*this)
{
    mHost.SetFrontend(&mFrontend);
    mHost.SetActionManager(&mMenus);
    mHost.SetUnit(GetLocalUnit());
    mView = new DocumentView([this] { return mFrontend.IsBusy(); }, this);
    auto* splitter = new QSplitter(Qt::Horizontal, this);
    splitter->addWidget(MakeLists());
    splitter->addWidget(mView);
    splitter->setStretchFactor(1, 1);
    splitter->setChildrenCollapsible(false);
    setCentralWidget(splitter);
    AddReport();
    AddOwnEntries();
    resize(1120, 760);
    ShowDocuments();

    mBooks->SetListeners([this](const QString& path) { OpenDocument(path); },
                         [this] { UpdatePlugInEntries(); });
    connect(mDocuments, &QListWidget::itemSelectionChanged, this, [this] {
        const int row = mDocuments->currentRow();
        if (row < 0 || mFrontend.IsBusy())
            return;
        mHost.SetActiveDocument(mHost.GetDocuments().at(static_cast<size_t>(row)));
        ShowDocuments();
    });
}

HostWindow::~HostWindow()
{
    mHost.SetFrontend(nullptr);
}

QWidget* HostWindow::MakeLists()
{
    auto* lists = new QSplitter(Qt::Vertical);
    mDocuments = new QListWidget;
    mBooks = new BookPanel(mHost, this);
    lists->addWidget(MakeGroup(tr("Documents"), mDocuments));
    lists->addWidget(MakeGroup(tr("Book"), mBooks));
    lists->setChildrenCollapsible(false);
    lists->setMinimumWidth(200);
    return lists;
}

void HostWindow::AddReport()
{
    mReport = new ReportPanel(this);
    mReportDock = new QDockWidget(tr("Last Export"), this);
    mReportDock->setWidget(mReport);
    mReportDock->setFeatures(QDockWidget::DockWidgetClosable);
    addDockWidget(Qt::BottomDockWidgetArea, mReportDock);
    resizeDocks({mReportDock}, {cReportHeight}, Qt::Vertical);
    mReportDock->hide();
}

void HostWindow::AddOwnEntries()
{
    QMenu* file = menuBar()->addMenu(tr("&File"));
    mFileEntries = std::make_unique<PositionedMenu>(*file);
    const auto add = [this](double position, const QString& name, const QKeySequence& shortcut,
                            void (HostWindow::*choose)()) {
        QAction* entry = mFileEntries->Add(position, name, [this, choose] {
            if (!mFrontend.IsBusy())
                (this->*choose)();
        });
        entry->setShortcut(shortcut);
        return entry;
    };
    add(100, tr("&New from Template..."), QKeySequence::New, &HostWindow::NewDocument);
    add(110, tr("&Open..."), QKeySequence::Open, &HostWindow::OpenChosenFiles);
    mDocumentEntries = {add(400, tr("&Close"), QKeySequence::Close, &HostWindow::CloseDocument),
                        add(410, tr("&Save"), QKeySequence::Save, &HostWindow::SaveDocument),
                        add(420, tr("Save &As..."), QKeySequence::SaveAs, &HostWindow::SaveDocumentAs)};
    mFileEntries->Add(9000, tr("&Quit"), [this] { close(); })
        ->setShortcut(QKeySequence(Qt::CTRL + Qt::Key_Q));
    menuBar()->addMenu(tr("&Help"))->addAction(tr("&About the Hopbox Plug-in"), this, [this] {
        if (mPlugIn.GetActions() != nullptr)
            RunPlugInAction(PlugInID::cAboutAction);
    });
    connect(file, &QMenu::aboutToShow, this, [this] { UpdatePlugInEntries(); });
    connect(&mBooks->GetPopupMenu(), &QMenu::aboutToShow, this, [this] { UpdatePlugInEntries(); });
}

void HostWindow::Start(const QStringList& files)
{
    LoadPlugIn();
    OpenFiles(files);
    ShowDocuments();
}

void HostWindow::OpenChosenFiles()
{
    OpenFiles(FileQuestions::AskForFilesToOpen(*this));
}

void HostWindow::OpenFiles(const QStringList& files)
{
    for (const QString& file : files) {
        if (FileQuestions::IsBook(file))
            mBooks->OpenBook(file);
        else
            OpenDocument(file);
    }
}

void HostWindow::LoadPlugIn()
{
    const GResult loaded = mPlugIn.Load(PlugInModule::FindFile(), mHost);
    if (!loaded.HasSucceeded())
        FileQuestions::ShowProblem(*this, loaded.GetReason());
    const auto run = [this](ActionID action) { RunPlugInAction(action); };
    mFileEntries->Finish(mMenus.GetEntries(HostMenuPath::cFile), run);
    mBooks->GetEntries().Finish(mMenus.GetEntries(HostMenuPath::cBookPanel), run);
    // Shortcuts of a popup menu work through the window alone.
    addActions(mBooks->GetPopupMenu().actions());
    UpdatePlugInEntries();
}

void HostWindow::UpdatePlugInEntries()
{
    if (mPlugIn.GetActions() == nullptr)
        return;
    mMenus.UpdateStates(*mPlugIn.GetActions());
    mFileEntries->UpdatePlugInEntries(mMenus.GetEntries(HostMenuPath::cFile));
    mBooks->GetEntries().UpdatePlugInEntries(mMenus.GetEntries(HostMenuPath::cBookPanel));
}

void HostWindow::RunPlugInAction(ActionID action)
{
    const int before = mHost.GetExportCount();
    mHost.SetLastFailure(QString());
    mPlugIn.GetActions()->DoAction(nullptr, action, nullptr);
    if (mReport->ShowNews(mHost, before))
        mReportDock->show();
    ShowDocuments();
}

void HostWindow::NewDocument()
{
    const QString path = FileQuestions::AskForTemplate(*this);
    if (path.isEmpty())
        return;
    mView->ShowText(tr("Opening %1...").arg(QFileInfo(path).fileName()));
    TakeNew(WhileWaiting([&] { return mHost.NewDocument(path); }));
}

void HostWindow::OpenDocument(const QString& path)
{
    mView->ShowText(tr("Opening %1...").arg(QFileInfo(path).fileName()));
    TakeNew(WhileWaiting([&] { return mHost.OpenDocument(path); }));
}

void HostWindow::TakeNew(const GResult& opened)
{
    FileQuestions::ShowProblem(*this, opened);
    ShowDocuments();
}

void HostWindow::SaveDocument()
{
    static_cast<void>(Save(mHost.GetActiveDocument()));  // a failure has been shown
}

void HostWindow::SaveDocumentAs()
{
    const ScribusHost::DocumentPtr document = mHost.GetActiveDocument();
    // A failure has been shown.
    static_cast<void>(SaveTo(document, FileQuestions::AskForDocumentToSave(*this, document->GetName())));
}

// A document with a file holds nothing that the file lacks.
bool HostWindow::Save(const ScribusHost::DocumentPtr& document)
{
    return document->IsSaved() ||
           SaveTo(document, FileQuestions::AskForDocumentToSave(*this, document->GetName()));
}

bool HostWindow::SaveTo(const ScribusHost::DocumentPtr& document, const QString& path)
{
    if (path.isEmpty())
        return false;
    const GResult saved = document->SaveAs(path);
    FileQuestions::ShowProblem(*this, saved);
    ShowDocuments();
    return saved.HasSucceeded();
}

void HostWindow::CloseDocument()
{
    static_cast<void>(Close(mHost.GetActiveDocument()));  // the user may have thought better of it
}

bool HostWindow::Close(const ScribusHost::DocumentPtr& document)
{
    if (!document->IsSaved()) {
        using Answer = FileQuestions::CloseAnswer;
        const Answer answer = FileQuestions::AskBeforeClosing(*this, document->GetName());
        if (answer == Answer::Cancel || (answer == Answer::Save && !Save(document)))
            return false;
    }
    mHost.CloseDocument(document);
    ShowDocuments();
    return true;
}

bool HostWindow::CloseAll()
{
    const std::vector<ScribusHost::DocumentPtr> documents = mHost.GetDocuments();
    for (const ScribusHost::DocumentPtr& document : documents) {
        if (!Close(document))
            return false;
    }
    return mBooks->CloseAll();
}

void HostWindow::ShowDocuments()
{
    const QSignalBlocker quiet(mDocuments);
    mDocuments->clear();
    const ScribusHost::DocumentPtr active = mHost.GetActiveDocument();
    for (const ScribusHost::DocumentPtr& document : mHost.GetDocuments()) {
        auto* item = new QListWidgetItem(
            document->IsSaved() ? document->GetName() : tr("%1 (not saved)").arg(document->GetName()),
            mDocuments);
        item->setToolTip(document->GetPath());
        if (document == active)
            mDocuments->setCurrentItem(item);
    }
    for (QAction* entry : mDocumentEntries)
        entry->setEnabled(active != nullptr);
    setWindowTitle(active ? active->GetName() : QString());
    mView->ShowDocument(active);
    UpdatePlugInEntries();
}

// Documents change behind the window's back: in Scribus, for one.
bool HostWindow::event(QEvent* event)
{
    if (event->type() == QEvent::WindowActivate && !mFrontend.IsBusy()) {
        mView->Refresh();
        UpdatePlugInEntries();
    }
    return QMainWindow::event(event);
}

void HostWindow::closeEvent(QCloseEvent* event)
{
    event->setAccepted(!mFrontend.IsBusy() && !mHost.IsModal() && CloseAll());
}
