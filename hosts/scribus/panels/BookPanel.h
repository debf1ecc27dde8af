#pragma once

#include "hosts/scribus/host/ScribusHost.h"
#include "hosts/scribus/panels/PositionedMenu.h"

#include <QCoreApplication>
#include <QWidget>

#include <functional>

class QComboBox;
class QListWidget;
class QMenu;

// The open books: the active one's documents in their order, and a popup menu for what can be done with it.
class BookPanel : public QWidget
{
    Q_DECLARE_TR_FUNCTIONS(BookPanel)

public:
    // The host outlives this.
    BookPanel(ScribusHost& host, QWidget* parent);
    ~BookPanel() override;

    // `open` is told which document of a book the user wants to open, `change` that the books, or the active
    // one's documents, are others.
    void SetListeners(const std::function<void(const QString& path)>& open,
                      const std::function<void()>& change);

    QMenu& GetPopupMenu() { return *mPopup; }
    PositionedMenu& GetEntries() { return mEntries; }

    // Opens a book and makes it the active one, or says why that is not possible.
    void OpenBook(const QString& path);

    // Closes all books; false when the user wants to keep one.
    [[nodiscard]] bool CloseAll();

    // Shows the books anew.
    void Refresh();

private:
    void AddOwnEntries();
    QAction* AddEntry(double position, const QString& name, void (BookPanel::*choose)());
    void CreateBook();
    void OpenBooks();
    void AddDocuments();
    void RemoveDocument();
    void MoveUp() { Move(-1); }
    void MoveDown() { Move(1); }
    void Move(int step);
    void NumberOn();
    void SaveBook();
    void CloseBook();
    [[nodiscard]] bool Save(const ScribusHost::BookPtr& book);
    [[nodiscard]] bool Close(const ScribusHost::BookPtr& book);
    void ShowDocuments();
    void ChangeDocuments(const QStringList& documents, int row);
    void UpdateEntries();

    ScribusHost& mHost;
    std::function<void(const QString&)> mOpen;
    std::function<void()> mChange;
    QComboBox* mBooks;
    QListWidget* mDocuments;
    QMenu* mPopup;
    PositionedMenu mEntries;
    QAction* mNumbering = nullptr;
    QList<QAction*> mBookEntries;      // those that need a book
    QList<QAction*> mDocumentEntries;  // those that need a document chosen in it
};
