#include "hosts/scribus/pdf/PdfExport.h"

#include "foundation/core/GException.h"
#include "foundation/system/GFileCalls.h"
#include "foundation/system/GSystemError.h"
#include "hosts/scribus/documents/ScribusDocument.h"
#include "hosts/scribus/runner/ScribusRunner.h"
#include "hosts/scribus/sla/SlaFile.h"
#include "hosts/scribus/sla/SlaLinks.h"
#include "hosts/scribus/sla/SlaScanner.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QTemporaryDir>

#include <algorithm>
#include <functional>
#include <string_view>

// The name under which a PDF is made, beside the one that it will have.
static QString GetPartPath(const QString& output)
{
    return output + QStringLiteral(".part");
}

// The PDF element of a document in Scribus's present form, which holds the settings of its last export.
static bool FindPdfElement(SlaScanner& scanner)
{
    while (scanner.Next()) {
        if (scanner.GetName() == "PDF" && scanner.Has("PrintP") && scanner.Has("InfoString"))
            return true;
    }
    return false;
}

// Copies the fonts that the document has with it, to the same places below another folder: Scribus looks for
// them in the document's folder and in some folders of certain names there.
static bool CopyOwnFonts(ScribusDocument& document, const QDir& folder)
{
    const QString own = QFileInfo(document.GetContentPath()).canonicalPath() + QLatin1Char('/');
    for (const DocumentFont& font : document.GetInfo()->fonts) {
        for (const QString& file : font.FindFiles()) {
            const QString path = QFileInfo(file).canonicalFilePath();
            const QString copy = folder.filePath(path.mid(own.size()));
            if (path.startsWith(own) && !QFileInfo::exists(copy) &&
                !(QDir().mkpath(QFileInfo(copy).path()) && QFile::copy(path, copy)))
                return false;
        }
    }
    return true;
}

// Of a file of any size.
static bool BearsMarkOfX(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const char* const begin = reinterpret_cast<const char*>(file.map(0, file.size()));
    if (begin == nullptr)
        return false;
    const char* const end = begin + file.size();
    const std::string_view mark = "/GTS_PDFXVersion";
    return std::search(begin, end, std::boyer_moore_horspool_searcher(mark.begin(), mark.end())) != end;
}

CommandResult PdfExport::Check(ScribusDocument& document, const QVector<int>& pages) const
{
    const QString fault = mSettings.FindFault();
    if (!fault.isEmpty())
        return CommandResult::Failure(QStringLiteral("The PDF settings can't be used: %1.").arg(fault));
    const DocumentInfo* info = document.GetInfo();
    if (info == nullptr)
        return CommandResult::Failure(document.GetError());
    const QStringList missing = info->GetMissingFonts();
    if (!missing.isEmpty())
        return CommandResult::Failure(QStringLiteral("Fonts of \"%1\" are missing: %2.")
                                          .arg(document.GetName(), missing.join(QStringLiteral(", "))));
    const bool areThere = std::all_of(pages.begin(), pages.end(),
                                      [info](int page) { return page >= 0 && page < info->pages.size(); });
    if (pages.isEmpty() || !areThere)
        return CommandResult::Failure(
            QStringLiteral("\"%1\" does not have the pages to be exported.").arg(document.GetName()));
    return CommandResult::Success();
}

CommandResult PdfExport::CheckForX(ScribusDocument& document, const QString& profile) const
{
    const bool isFlat = mSettings.kind != PdfSettings::Kind::X4;
    if (isFlat && document.GetInfo()->hasTransparency)
        return CommandResult::Failure(
            QStringLiteral("\"%1\" has transparent objects, which PDF/X-1a and PDF/X-3 don't allow.")
                .arg(document.GetName()));
    QStringList installed;
    for (const ColorProfile& candidate : mRunner.GetProfiles()) {
        if (candidate.isCmykOutput && candidate.name == profile)
            return CommandResult::Success();
        if (candidate.isCmykOutput)
            installed.append(candidate.name);
    }
    return CommandResult::Failure(
        QStringLiteral("PDF/X needs the colour profile of a press. \"%1\" is none that is installed (%2).")
            .arg(profile, installed.join(QStringLiteral(", "))));
}

// A copy of the document that names the output profile: Scribus takes it from the document alone.
CommandResult PdfExport::MakeSourceForX(ScribusDocument& document, const QString& source) const
{
    QByteArray text;
    QString reason;
    bool isPacked = false;
    if (!SlaFile::Read(document.GetPresentForm(), text, isPacked, reason))
        return CommandResult::Failure(reason);
    text = SlaLinks::MakeLinksAbsolute(text, QFileInfo(document.GetPresentForm()).path());
    SlaScanner scanner({text.constData(), static_cast<size_t>(text.size())});
    if (!FindPdfElement(scanner))
        return CommandResult::Failure(QStringLiteral("Scribus wrote no PDF settings into its document."));
    const QString profile =
        mSettings.outputProfile.isEmpty() ? scanner.GetText("PrintP") : mSettings.outputProfile;
    const QString condition = mSettings.outputCondition.isEmpty() ? profile : mSettings.outputCondition;
    const CommandResult check = CheckForX(document, profile);
    if (!check.HasSucceeded())
        return check;
    SlaEdit edit(text);
    const SlaScanner::Place profilePlace = scanner.GetPlace("PrintP");
    const SlaScanner::Place conditionPlace = scanner.GetPlace("InfoString");
    const bool isProfileFirst = profilePlace.offset < conditionPlace.offset;
    edit.Replace(isProfileFirst ? profilePlace : conditionPlace, isProfileFirst ? profile : condition);
    edit.Replace(isProfileFirst ? conditionPlace : profilePlace, isProfileFirst ? condition : profile);
    if (!SlaFile::Write(source, edit.Finish(), false, reason))
        return CommandResult::Failure(reason);
    const QDir folder = QFileInfo(source).dir();
    if (!CopyOwnFonts(document, folder))
        return CommandResult::Failure(
            QStringLiteral("The document's fonts can't be copied to \"%1\".").arg(folder.path()));
    return CommandResult::Success();
}

CommandResult PdfExport::ExportPages(ScribusDocument& document, const QVector<int>& pages,
                                     const QString& output)
{
    CommandResult result = Check(document, pages);
    const QTemporaryDir scratch(mRunner.MakeScratchPath(QStringLiteral("x")));
    const QString source =
        mSettings.IsX() ? scratch.filePath(QStringLiteral("document.sla")) : document.GetContentPath();
    if (result.HasSucceeded() && mSettings.IsX())
        result = MakeSourceForX(document, source);
    if (!result.HasSucceeded())
        return result;

    const FileStamp stamp = document.GetStamp();
    QJsonArray numbers;
    for (const int page : pages)
        numbers.append(page + 1);
    const QString part = GetPartPath(output);
    result = mRunner.RunScript(QStringLiteral("pdf"), {{QStringLiteral("document"), source},
                                                       {QStringLiteral("output"), part},
                                                       {QStringLiteral("pages"), numbers},
                                                       {QStringLiteral("options"), mSettings.MakeOptions()},
                                                       {QStringLiteral("subset"), mSettings.subsetsFonts}});
    if (result.HasSucceeded() && FileStamp::Take(document.GetContentPath()) != stamp)
        result = CommandResult::Failure(
            QStringLiteral("\"%1\" was changed while it was exported.").arg(document.GetName()));
    if (result.HasSucceeded())
        result = CheckPdf(part, pages.size());
    return Finish(result, part, output);
}

CommandResult PdfExport::Join(const QStringList& parts, const QString& output)
{
    // The first one's document information, where the mark of PDF/X stands, is that of the whole; without it,
    // the book bears none, as its documents have titles of their own.
    QStringList arguments{mSettings.IsX() && !parts.isEmpty() ? parts.first() : QStringLiteral("--empty"),
                          QStringLiteral("--deterministic-id"), QStringLiteral("--pages")};
    arguments += parts;
    const QString part = GetPartPath(output);
    arguments << QStringLiteral("--") << part;
    CommandResult result = mRunner.RunQpdf(arguments);
    return Finish(result, part, output);
}

// Reads the table of objects and the pages, which a file that ends too early or has a hole lacks. Going
// through every stream as well would take a tenth of the time that Scribus takes.
CommandResult PdfExport::CheckPdf(const QString& path, int pageCount) const
{
    const ScribusAnswer check = mRunner.RunQpdf({QStringLiteral("--show-npages"), path});
    if (!check.HasSucceeded())
        return check;
    const int counted = check.output.trimmed().split('\n').last().toInt();
    if (counted != pageCount)
        return CommandResult::Failure(
            QStringLiteral("Scribus made a PDF of %1 pages in the place of %2.").arg(counted).arg(pageCount));
    if (mSettings.IsX() && !BearsMarkOfX(path))
        return CommandResult::Failure(
            QStringLiteral("Scribus made a PDF that does not bear the mark of PDF/X."));
    return CommandResult::Success();
}

CommandResult PdfExport::Finish(const CommandResult& result, const QString& part, const QString& output) const
{
    CommandResult finished = result;
    if (result.HasSucceeded()) {
        try {
            if (!GFileCalls::RenameFile(GPathName(part), GPathName(output), true))
                finished = CommandResult::Failure(QStringLiteral("\"%1\" can't be put in place: %2.")
                                                      .arg(output, GetReasonText(GetLastSystemError())));
        } catch (const GException& error) {
            finished = CommandResult::Failure(error.GetDescription());
        }
    }
    if (!finished.HasSucceeded())
        QFile::remove(part);
    return finished;
}
