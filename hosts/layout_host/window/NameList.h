#pragma once

#include <QCoreApplication>
#include <QString>
#include <QVector>
#include <QWidget>

class QLabel;
class QTreeWidget;

// One row of a list of names.
struct NameRow
{
    QString name;
    QString detail;          // the row's tool tip; the name where it is empty
    bool isMissing = false;  // marked, and moved to the top
};

// A titled list of names, such as a document's fonts, with the missing ones marked and counted.
class NameList : public QWidget
{
    Q_DECLARE_TR_FUNCTIONS(NameList)

public:
    NameList(const QString& title, QWidget* parent);
    ~NameList() override;

    void Show(const QVector<NameRow>& rows);

private:
    QString mTitle;
    QLabel* mHeading;
    QTreeWidget* mRows;
};
