#include "hosts/scribus/panels/FileQuestions.h"

#include "hosts/scribus/books/BookFile.h"

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

bool AskBeforeReplacing(QWidget& parent, const QString& path)
{
    QMessageBox box(QMessageBox::Warning, QStringLiteral("Save As"),
                    QStringLiteral("\u201C%1\u201D already exists. Replace it?").arg(path),
                    QMessageBox::Yes | QMessageBox::No, &parent);
    box.setTextFormat(Qt::PlainText);
    box.setDefaultButton(QMessageBox::No);
    return box.exec() == QMessageBox::Yes;
}

// A path with one of the endings; the first is added where there is none. The file window asks before it
// gives a file that is there, but not about one that only the ending makes.
QString AskForPath(QWidget& parent, const QString& title, const QString& proposal, const QString& filter,
                   const QStringList& endings)
{
    const QString path = QFileDialog::getSaveFileName(&parent, title, proposal, filter);
    for (const QString& ending : endings) {
        if (path.isEmpty() || path.endsWith(ending, Qt::CaseInsensitive))
            return path;
    }
    const QString whole = path + endings.constFirst();
    return !QFileInfo::exists(whole) || AskBeforeReplacing(parent, whole) ? whole : QString();
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

QStringList FileQuestions::AskForFilesToOpen(QWidget& parent)
{
    const QString filter =
        QStringLiteral("Scribus documents and books (*.sla *.sla.gz *%1)").arg(GetBookEnding());
    return QFileDialog::getOpenFileNames(&parent, QStringLiteral("Open"), QString(), filter);
}

QString FileQuestions::AskForTemplate(QWidget& parent)
{
    return QFileDialog::getOpenFileName(&parent, QStringLiteral("New from Template"), cTemplateFolder,
                                        cDocumentFilter);
}

QString FileQuestions::AskForDocumentToSave(QWidget& parent, const QString& documentName)
{
    return AskForPath(parent, QStringLiteral("Save As"), documentName, cDocumentFilter,
                      {QStringLiteral(".sla"), QStringLiteral(".sla.gz")});
}

QStringList FileQuestions::AskForBooksToOpen(QWidget& parent)
{
    return QFileDialog::getOpenFileNames(&parent, QStringLiteral("Open Book"), QString(), GetBookFilter());
}

QString FileQuestions::AskForNewBook(QWidget& parent)
{
    return AskForPath(parent, QStringLiteral("New Book"), QString(), GetBookFilter(), {GetBookEnding()});
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
