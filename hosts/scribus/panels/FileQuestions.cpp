#include "hosts/scribus/panels/FileQuestions.h"

#include "hosts/scribus/books/BookFile.h"

#include <QCoreApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>

namespace
{
class Texts
{
    Q_DECLARE_TR_FUNCTIONS(FileQuestions)
};

QString GetDocumentFilter()
{
    return Texts::tr("Scribus documents") + QStringLiteral(" (*.sla *.sla.gz)");
}

const QString cTemplateFolder = QStringLiteral("/usr/share/scribus/templates");

QString GetBookEnding()
{
    return QLatin1Char('.') + QLatin1String(BookFile::cExtension);
}

QString GetBookFilter()
{
    return Texts::tr("Books") + QStringLiteral(" (*%1)").arg(GetBookEnding());
}

bool AskBeforeReplacing(QWidget& parent, const QString& path)
{
    QMessageBox box(QMessageBox::Warning, Texts::tr("Save As"),
                    Texts::tr("\"%1\" already exists. Replace it?").arg(path),
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
    return QFileDialog::getOpenFileNames(&parent, Texts::tr("Open"), QString(), GetDocumentFilter());
}

QStringList FileQuestions::AskForFilesToOpen(QWidget& parent)
{
    const QString filter = Texts::tr("Scribus documents and books") +
                           QStringLiteral(" (*.sla *.sla.gz *%1)").arg(GetBookEnding());
    return QFileDialog::getOpenFileNames(&parent, Texts::tr("Open"), QString(), filter);
}

QString FileQuestions::AskForTemplate(QWidget& parent)
{
    return QFileDialog::getOpenFileName(&parent, Texts::tr("New from Template"), cTemplateFolder,
                                        GetDocumentFilter());
}

QString FileQuestions::AskForDocumentToSave(QWidget& parent, const QString& documentName)
{
    return AskForPath(parent, Texts::tr("Save As"), documentName, GetDocumentFilter(),
                      {QStringLiteral(".sla"), QStringLiteral(".sla.gz")});
}

QStringList FileQuestions::AskForBooksToOpen(QWidget& parent)
{
    return QFileDialog::getOpenFileNames(&parent, Texts::tr("Open Book"), QString(), GetBookFilter());
}

QString FileQuestions::AskForNewBook(QWidget& parent)
{
    return AskForPath(parent, Texts::tr("New Book"), QString(), GetBookFilter(), {GetBookEnding()});
}

FileQuestions::CloseAnswer FileQuestions::AskBeforeClosing(QWidget& parent, const QString& name)
{
    QMessageBox box(QMessageBox::Question, Texts::tr("Close"),
                    Texts::tr("Save \"%1\" before closing?").arg(name),
                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, &parent);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(Texts::tr("If you don't save, it will be lost."));
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

void FileQuestions::ShowProblem(QWidget& parent, const GResult& result)
{
    if (!result.HasSucceeded())
        ShowProblem(parent, result.GetReason());
}
