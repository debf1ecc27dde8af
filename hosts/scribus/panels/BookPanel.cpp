#include "hosts/scribus/panels/BookPanel.h"

#include "hosts/scribus/panels/FileQuestions.h"

#include <QAction>
#include <QComboBox>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QListWidget>
#include <QMenu>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

#include <algorithm>

namespace
{
// A row that says why there is none.
void AddHint(QListWidget& list, const QString& text)
{
    auto* item = new QListWidgetItem(text, &list);
    item->setFlags(Qt::NoItemFlags);
}

QListWidgetItem* MakeItem(const QString& path, const QWidget& widget)
{
    const QFileInfo file(path);
    auto* item = new QListWidgetItem(file.fileName());
    item->setToolTip(path);
    if (!file.exists()) {
        item->setText(BookPanel::tr("%1 (missing)").arg(file.fileName()));
        item->setIcon(widget.style()->standardIcon(QStyle::SP_MessageBoxWarning));
    }
    return item;
}
}  // namespace

BookPanel::BookPanel(ScribusHost& host, QWidget* parent)
    : QWidget(parent),
      mHost(host),
      mBooks(new QComboBox(this)),
      mDocuments(new QListWidget(this)),
      mPopup(new QMenu(this)),
      mEntries(*mPopup)
{
    auto* button = new QToolButton(this);
    button->setText(QStringLiteral("\u2261"));
    button->setToolTip(tr("Book menu"));
    button->setMenu(mPopup);
    button->setPopupMode(QToolButton::InstantPopup);
    auto* top = new QHBoxLayout;
    top->addWidget(mBooks, 1);
    top->addWidget(button);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(top);
    layout->addWidget(mDocuments);
    AddOwnEntries();
    Refresh();

    connect(mBooks, QOverload<int>::of(&QComboBox::activated), this, [this](int index) {
        mHost.SetActiveBook(mHost.GetBooks().at(static_cast<size_t>(index)));
        ShowDocuments();
    });
    connect(mDocuments, &QListWidget::currentRowChanged, this, [this] { UpdateEntries(); });
    connect(mDocuments, &QListWidget::itemActivated, this, [this](const QListWidgetItem* item) {
        if (mOpen)
            mOpen(item->toolTip());
    });
}

BookPanel::~BookPanel() = default;

void BookPanel::AddOwnEntries()
{
    AddEntry(100, tr("&New Book..."), &BookPanel::CreateBook);
    AddEntry(110, tr("&Open Book..."), &BookPanel::OpenBooks);
    mBookEntries = {AddEntry(200, tr("&Add Documents..."), &BookPanel::AddDocuments)};
    mDocumentEntries = {AddEntry(210, tr("&Remove Document"), &BookPanel::RemoveDocument),
                        AddEntry(220, tr("Move &Up"), &BookPanel::MoveUp),
                        AddEntry(230, tr("Move &Down"), &BookPanel::MoveDown)};
    mNumbering = AddEntry(240, tr("&Number Pages On"), &BookPanel::NumberOn);
    mNumbering->setToolTip(tr("Page numbers go on from one document to the next."));
    mNumbering->setCheckable(true);
    mBookEntries += {mNumbering, AddEntry(300, tr("&Save Book"), &BookPanel::SaveBook),
                     AddEntry(310, tr("&Close Book"), &BookPanel::CloseBook)};
}

QAction* BookPanel::AddEntry(double position, const QString& name, void (BookPanel::*choose)())
{
    return mEntries.Add(position, name, [this, choose] { (this->*choose)(); });
}

void BookPanel::SetListeners(const std::function<void(const QString& path)>& open,
                             const std::function<void()>& change)
{
    mOpen = open;
    mChange = change;
}

void BookPanel::OpenBook(const QString& path)
{
    FileQuestions::ShowProblem(*window(), mHost.OpenBook(path));
    Refresh();
}

bool BookPanel::CloseAll()
{
    const std::vector<ScribusHost::BookPtr> books = mHost.GetBooks();
    return std::all_of(books.begin(), books.end(),
                       [this](const ScribusHost::BookPtr& book) { return Close(book); });
}

void BookPanel::Refresh()
{
    mBooks->clear();
    for (const ScribusHost::BookPtr& book : mHost.GetBooks()) {
        mBooks->addItem(QFileInfo(book->GetPath()).completeBaseName());
        mBooks->setItemData(mBooks->count() - 1, book->GetPath(), Qt::ToolTipRole);
        if (book == mHost.GetActiveBook())
            mBooks->setCurrentIndex(mBooks->count() - 1);
    }
    mBooks->setEnabled(mBooks->count() > 0);
    ShowDocuments();
}

void BookPanel::CreateBook()
{
    const QString path = FileQuestions::AskForNewBook(*window());
    if (!path.isEmpty())
        mHost.NewBook(path);
    Refresh();
}

void BookPanel::OpenBooks()
{
    const QStringList paths = FileQuestions::AskForBooksToOpen(*window());
    for (const QString& path : paths)
        OpenBook(path);
}

void BookPanel::AddDocuments()
{
    const ScribusHost::BookPtr book = mHost.GetActiveBook();
    ChangeDocuments(book->GetDocuments() + FileQuestions::AskForDocumentsToOpen(*window()),
                    mDocuments->currentRow());
}

void BookPanel::RemoveDocument()
{
    QStringList documents = mHost.GetActiveBook()->GetDocuments();
    const int row = mDocuments->currentRow();
    documents.removeAt(row);
    ChangeDocuments(documents, qMin(row, documents.size() - 1));
}

void BookPanel::Move(int step)
{
    QStringList documents = mHost.GetActiveBook()->GetDocuments();
    const int row = mDocuments->currentRow();
    if (row + step < 0 || row + step >= documents.size())
        return;
    documents.move(row, row + step);
    ChangeDocuments(documents, row + step);
}

void BookPanel::NumberOn()
{
    mHost.GetActiveBook()->SetNumberedOn(mNumbering->isChecked());
}

void BookPanel::SaveBook()
{
    static_cast<void>(Save(mHost.GetActiveBook()));  // a failure has been shown
}

void BookPanel::CloseBook()
{
    static_cast<void>(Close(mHost.GetActiveBook()));  // the user may have thought better of it
}

bool BookPanel::Save(const ScribusHost::BookPtr& book)
{
    const GResult saved = book->Save();
    FileQuestions::ShowProblem(*window(), saved);
    Refresh();
    return saved.HasSucceeded();
}

bool BookPanel::Close(const ScribusHost::BookPtr& book)
{
    if (book->IsModified()) {
        using Answer = FileQuestions::CloseAnswer;
        const Answer answer =
            FileQuestions::AskBeforeClosing(*window(), QFileInfo(book->GetPath()).completeBaseName());
        if (answer == Answer::Cancel || (answer == Answer::Save && !Save(book)))
            return false;
    }
    mHost.CloseBook(book);
    Refresh();
    return true;
}

void BookPanel::ShowDocuments()
{
    mDocuments->clear();
    if (const ScribusHost::BookPtr book = mHost.GetActiveBook()) {
        for (const QString& path : book->GetDocuments())
            mDocuments->addItem(MakeItem(path, *this));
        if (book->GetDocuments().isEmpty())
            AddHint(*mDocuments, tr("This book is empty. Its menu adds documents."));
    } else {
        AddHint(*mDocuments, tr("No book is open."));
    }
    UpdateEntries();
    if (mChange)
        mChange();
}

void BookPanel::ChangeDocuments(const QStringList& documents, int row)
{
    mHost.GetActiveBook()->SetDocuments(documents);
    ShowDocuments();
    mDocuments->setCurrentRow(row);
}

void BookPanel::UpdateEntries()
{
    for (QAction* entry : mBookEntries)
        entry->setEnabled(mHost.GetActiveBook() != nullptr);
    mNumbering->setChecked(mHost.GetActiveBook() != nullptr && mHost.GetActiveBook()->IsNumberedOn());
    const int count = mHost.GetActiveBook() ? mHost.GetActiveBook()->GetDocuments().size() : 0;
    for (QAction* entry : mDocumentEntries)
        entry->setEnabled(mDocuments->currentRow() >= 0 && mDocuments->currentRow() < count);
}
