#pragma once

#include "plugin/host/IDocument.h"

#include <QLineEdit>

// The field for a page range such as "1-5,8,11-13". What can't become one is not let in; what is on the way
// to one may stand, with a complaint. The pages are those that the host's front document had when the field
// was made.
class PageRangeEdit : public QLineEdit
{
    Q_OBJECT

public:
    explicit PageRangeEdit(QWidget* parent = nullptr);

    // What keeps the text from being exported; empty when nothing does. An empty text is taken as it is, and
    // where the host has no list of pages, so is every whole range.
    const QString& GetComplaint() const { return mComplaint; }

private:
    void TakePages();
    bool NamesPages() const;
    void OnTextChanged();

    const IDataBase* mDataBase = nullptr;
    HostPtr<IPageList> mPages;  // empty where the host gives none
    QString mComplaint;
};
