#pragma once

#include "foundation/core/GResult.h"

#include <QStringList>

class QWidget;

// The file windows of this host, and its messages. Each answer is empty when the user cancels. Kinds of files
// are told apart by the ending of their names.
namespace FileQuestions
{
bool IsBook(const QString& path);

QStringList AskForDocumentsToOpen(QWidget& parent);

// Documents and books.
QStringList AskForFilesToOpen(QWidget& parent);
QString AskForTemplate(QWidget& parent);
QString AskForDocumentToSave(QWidget& parent, const QString& documentName);
QStringList AskForBooksToOpen(QWidget& parent);
QString AskForNewBook(QWidget& parent);

enum class CloseAnswer
{
    Save,
    Discard,
    Cancel
};

// What to do with something that is about to be closed and has no file that holds it.
CloseAnswer AskBeforeClosing(QWidget& parent, const QString& name);

// Tells the user what did not work.
void ShowProblem(QWidget& parent, const QString& text);

// The same for a result; nothing is shown where it is a success.
void ShowProblem(QWidget& parent, const GResult& result);
}  // namespace FileQuestions
