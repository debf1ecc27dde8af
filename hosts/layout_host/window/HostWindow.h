#pragma once

#include "hosts/scribus/host/HostMenus.h"
#include "hosts/scribus/host/PlugInModule.h"
#include "hosts/scribus/host/ScribusHost.h"
#include "hosts/scribus/panels/PositionedMenu.h"
#include "hosts/scribus/panels/WindowFrontend.h"

#include <QCoreApplication>
#include <QMainWindow>

#include <memory>

class BookPanel;
class DocumentView;
class ReportPanel;
class QDockWidget;
class QListWidget;

// The application's window: the open documents and books, a view of the document in front, and the menus,
// with the entries of the plug-in among them. After an export, a list says what became of the settings.
class HostWindow : public QMainWindow
{
    Q_DECLARE_TR_FUNCTIONS(HostWindow)

public:
    explicit HostWindow(const ScribusSetup& setup);
    ~HostWindow() override;

    // Loads the plug-in and opens the files, documents and books; what does not work is told to the user. For
    // a window that is shown.
    void Start(const QStringList& files);

protected:
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* MakeLists();
    void AddReport();
    void AddOwnEntries();
    void LoadPlugIn();
    void UpdatePlugInEntries();
    void RunPlugInAction(ActionID action);

    void NewDocument();
    void OpenChosenFiles();
    void OpenFiles(const QStringList& files);
    void OpenDocument(const QString& path);
    void SaveDocument();
    void SaveDocumentAs();
    void CloseDocument();
    [[nodiscard]] bool Save(const ScribusHost::DocumentPtr& document);
    [[nodiscard]] bool SaveTo(const ScribusHost::DocumentPtr& document, const QString& path);
    [[nodiscard]] bool Close(const ScribusHost::DocumentPtr& document);
    [[nodiscard]] bool CloseAll();
    void ShowDocuments();
    void TakeNew(const GResult& opened);

    ScribusHost mHost;
    HostMenus mMenus;
    WindowFrontend mFrontend;
    QListWidget* mDocuments = nullptr;
    BookPanel* mBooks = nullptr;
    DocumentView* mView = nullptr;
    ReportPanel* mReport = nullptr;
    QDockWidget* mReportDock = nullptr;
    std::unique_ptr<PositionedMenu> mFileEntries;
    QList<QAction*> mDocumentEntries;  // those that need a document
    PlugInModule mPlugIn;              // the last: it goes while all that it knows is there
};
