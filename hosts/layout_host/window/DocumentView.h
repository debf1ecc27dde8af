#pragma once

#include "hosts/scribus/documents/ScribusDocument.h"

#include <QCoreApplication>
#include <QTimer>
#include <QWidget>

#include <functional>
#include <memory>

class NameList;
class PagePreview;
class QLabel;
class QToolButton;

// What a document looks like and holds: one page with buttons to turn it, and beside it the facts that
// Scribus reports, its fonts and its links. Pictures of pages are made a moment after the page was asked for,
// so that the window is drawn first.
class DocumentView : public QWidget
{
    Q_DECLARE_TR_FUNCTIONS(DocumentView)

public:
    // `isBusy` tells that nothing may be asked of the documents now.
    DocumentView(const std::function<bool()>& isBusy, QWidget* parent);
    ~DocumentView() override;

    // Shows the document from its first page, or from the page that is shown when it is shown already. Null
    // shows that there is none. Lengths are in millimetres, or in inches.
    void ShowDocument(const std::shared_ptr<ScribusDocument>& document);

    // Shows a text in the place of the document, until the next ShowDocument.
    void ShowText(const QString& text);

    // Takes a document up again whose file has changed since. Asks Scribus only then.
    void Refresh();

private:
    QWidget* MakePageSide();
    QWidget* MakeFactSide();
    void ShowFacts(const DocumentInfo& info);
    void TurnTo(int pageIndex);
    void ShowPage(const DocumentInfo& info);
    void DrawPage();

    std::function<bool()> mIsBusy;
    std::shared_ptr<ScribusDocument> mDocument;
    int mPageIndex = 0;
    PagePreview* mPreview = nullptr;
    QToolButton* mPrevious = nullptr;
    QToolButton* mNext = nullptr;
    QLabel* mPageLabel = nullptr;
    QLabel* mFacts = nullptr;
    NameList* mFonts = nullptr;
    NameList* mLinks = nullptr;
    QTimer mDrawing;
};
