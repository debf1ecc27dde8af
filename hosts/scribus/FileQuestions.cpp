#include "hosts/scribus/FileQuestions.h"

#include "hosts/scribus/BookFile.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>

namespace
{
const QString cDocumentFilter = QStringLiteral("Scribus documents (*.sla *.sla.gz)");
const QString cTemplateFolder = QStringLiteral("/usr/share/scribus/templates");

QString GetBookEnding()
{
    return QLatin1Char('.') + QLatin1String(BookFile::cExtension);
}

QString GetBookFilter()
{
    return QStringLiteral("Books (*%1)").arg(GetBookEnding());
}

QString AddEnding(const QString& path, const QString& ending)
{
    return path.isEmpty() || path.endsWith(ending, Qt::CaseInsensitive) ? path : path + ending;
}
}  // namespace

bool FileQuestions::IsBook(const QString& path)
{
    return path.endsWith(GetBookEnding(), Qt::CaseInsensitive);
}

QStringList FileQuestions::AskForDocumentsToOpen(QWidget& parent)
{
    return QFileDialog::getOpenFileNames(&parent, QStringLiteral("Open"), QString(), cDocumentFilter);
}

QString FileQuestions::AskForTemplate(QWidget& parent)
{
    return QFileDialog::getOpenFileName(&parent, QStringLiteral("New from Template"), cTemplateFolder,
                                        cDocumentFilter);
}

QString FileQuestions::AskForDocumentToSave(QWidget& parent, const QString& documentName)
{
    const QString path =
        QFileDialog::getSaveFileName(&parent, QStringLiteral("Save As"), documentName, cDocumentFilter);
    return path.endsWith(QLatin1String(".gz"), Qt::CaseInsensitive) ? path
                                                                    : AddEnding(path, QStringLiteral(".sla"));
}

QStringList FileQuestions::AskForBooksToOpen(QWidget& parent)
{
    return QFileDialog::getOpenFileNames(&parent, QStringLiteral("Open Book"), QString(), GetBookFilter());
}

QString FileQuestions::AskForNewBook(QWidget& parent)
{
    return AddEnding(
        QFileDialog::getSaveFileName(&parent, QStringLiteral("New Book"), QString(), GetBookFilter()),
        GetBookEnding());
}

FileQuestions::CloseAnswer FileQuestions::AskBeforeClosing(QWidget& parent, const QString& name)
{
    QMessageBox box(QMessageBox::Question, QStringLiteral("Close"),
                    QStringLiteral("Save \u201C%1\u201D before closing?").arg(name),
                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, &parent);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(QStringLiteral("If you don\u2019t save, it will be lost."));
    box.setDefaultButton(QMessageBox::Save);
    switch (box.exec()) {
        case QMessageBox::Save:
            return CloseAnswer::Save;
        case QMessageBox::Discard:
            return CloseAnswer::Discard;
        default:
            return CloseAnswer::Cancel;
    }
}

void FileQuestions::ShowProblem(QWidget& parent, const QString& text)
{
    QMessageBox box(QMessageBox::Warning, QString(), text, QMessageBox::Ok, &parent);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}
