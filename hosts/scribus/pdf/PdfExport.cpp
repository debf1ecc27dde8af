#include "hosts/scribus/pdf/PdfExport.h"

#include "foundation/core/GException.h"
#include "foundation/system/GFileCalls.h"
#include "foundation/system/GSystemError.h"
#include "hosts/scribus/documents/ScribusDocument.h"
#include "hosts/scribus/pdf/PdfSource.h"
#include "hosts/scribus/pdf/Preflight.h"
#include "hosts/scribus/runner/IHostFrontend.h"
#include "hosts/scribus/runner/ScribusRunner.h"

#include <QFile>
#include <QJsonArray>
#include <QTemporaryDir>

#include <algorithm>

// The name under which a PDF is made, beside the one that it will have.
static QString GetPartPath(const QString& output)
{
    return output + QStringLiteral(".part");
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

QJsonObject PdfExport::MakeRequest(const DocumentInfo& info, const QString& source, const QVector<int>& pages,
                                   const Paths& paths) const
{
    QJsonArray numbers;
    for (const int page : pages)
        numbers.append(page + 1);
    QJsonArray fonts;
    for (const DocumentFont& font : info.fonts)
        fonts.append(font.name);
    return {{QStringLiteral("document"), source},
            {QStringLiteral("output"), paths.written},
            {QStringLiteral("pages"), numbers},
            {QStringLiteral("fonts"), fonts},
            {QStringLiteral("subset"), mSettings.subsetsFonts}};
}

ScribusAnswer PdfExport::RunScribus(QJsonObject request, const Paths& paths, bool embedsPlaced) const
{
    QJsonObject options = mSettings.MakeOptions();
    if (!embedsPlaced)
        options.insert(QStringLiteral("embedPDF"), 0);
    request.insert(QStringLiteral("options"), options);
    if (!mSettings.MayBeTransparent() && embedsPlaced)
        request.insert(QStringLiteral("probe"), paths.probe);
    return mRunner.RunScript(QStringLiteral("pdf"), request);
}

// What would make the PDF less than people expect is a failure, unless somebody lets it pass.
CommandResult PdfExport::Permit(const QString& documentName, const QStringList& problems)
{
    QStringList fresh;
    for (const QString& problem : problems) {
        if (!mNotes.contains(problem))
            fresh.append(problem);
    }
    fresh.removeDuplicates();
    if (fresh.isEmpty())
        return CommandResult::Success();
    using Decision = IHostFrontend::Decision;
    IHostFrontend* const frontend = mRunner.GetFrontend();
    switch (frontend == nullptr ? Decision::Refuse : frontend->AskToGoOn(documentName, fresh)) {
        case Decision::GoOn:
            mNotes += fresh;
            return CommandResult::Success();
        case Decision::Cancel:
            return CommandResult::Cancellation();
        case Decision::Refuse:
            break;
    }
    return CommandResult::Failure(fresh.join(QLatin1Char(' ')));
}

CommandResult PdfExport::ExportPages(ScribusDocument& document, const QVector<int>& pages,
                                     const QString& output)
{
    mNotes.clear();
    CommandResult result = Check(document, pages);
    if (!result.HasSucceeded())
        return result;
    const FileStamp stamp = document.GetStamp();
    const DocumentInfo info = *document.GetInfo();
    result = Permit(document.GetName(), Preflight(mSettings, info, pages).FindProblems(mRunner));
    if (!result.HasSucceeded())
        return result;
    const QTemporaryDir scratch(mRunner.MakeScratchPath(QStringLiteral("x")));
    PdfSource source(mRunner, mSettings);
    source.SetFirstNumber(mFirstNumber);
    result = source.Make(document, scratch.filePath(QStringLiteral("document.sla")));
    if (!result.HasSucceeded())
        return result;
    mNotes += source.GetNotes();
    mPageNumbers = source.GetPageNumbers();
    mNextNumber = source.GetNextNumber();
    // The PDF that Scribus writes is in the output's folder, where there is room for it or none.
    const Paths paths{output + QStringLiteral(".scribus"), scratch.filePath(QStringLiteral("probe.pdf")),
                      GetPartPath(output)};
    const QJsonObject request = MakeRequest(info, source.GetPath(), pages, paths);
    PdfCheck check(mSettings, info, pages);
    for (const bool embedsPlaced : {true, false}) {
        bool isWorthAnother = false;
        result = RunScribus(request, paths, embedsPlaced);
        if (result.HasSucceeded() && FileStamp::Take(document.GetContentPath()) != stamp)
            result = CommandResult::Failure(
                QStringLiteral("\"%1\" was changed while it was exported.").arg(document.GetName()));
        if (result.HasSucceeded())
            result = FinishPdf(check, paths, document.GetName(), embedsPlaced, isWorthAnother);
        if (!isWorthAnother)
            break;
        mNotes.append(result.reason + QStringLiteral(" It was turned into an image."));
    }
    QFile::remove(paths.written);
    return Finish(result, paths.finished, output);
}

// Makes of Scribus's PDF what was asked for. `isWorthAnother` says that it failed for a placed file alone.
CommandResult PdfExport::FinishPdf(PdfCheck& check, const Paths& paths, const QString& documentName,
                                   bool embedsPlaced, bool& isWorthAnother)
{
    const int pageCount = check.CountPages();
    PdfFile pdf;
    CommandResult result = OpenPdf(pdf, paths.written, pageCount);
    if (result.HasSucceeded() && !mSettings.MayBeTransparent() && embedsPlaced) {
        PdfFile probe;
        result = OpenPdf(probe, paths.probe, pageCount, false);
        if (result.HasSucceeded())
            result = check.CheckTransparency(probe);
    }
    if (result.HasSucceeded() && mSettings.IsX()) {
        bool isPlaced = false;
        result = check.CheckForX(pdf, isPlaced);
        isWorthAnother = !result.HasSucceeded() && isPlaced && embedsPlaced;
    }
    if (result.HasSucceeded())
        result = Permit(documentName, check.CheckImages(pdf));
    if (result.HasSucceeded())
        result = check.CheckFonts(pdf);
    return result.HasSucceeded() ? ChangePdf(pdf, check, paths.finished) : result;
}

CommandResult PdfExport::ChangePdf(PdfFile& pdf, const PdfCheck& check, const QString& path)
{
    const PdfWishes wishes = mSettings.MakeWishes(check.ManagesColors());
    mReport = check.Describe(pdf);
    const auto isCancelled = [this] { return mRunner.IsCancelled(); };
    QString reason;
    if (pdf.Change(
            wishes, [&](const PdfImage& image) { return check.IsGray(image); }, isCancelled, reason) &&
        pdf.Write(path, wishes, reason))
        return CommandResult::Success();
    if (reason.isEmpty())
        return {CommandResult::Outcome::Cancelled, QStringLiteral("The user cancelled.")};
    return CommandResult::Failure(QStringLiteral("The PDF can't be finished: %1.").arg(reason));
}

// Reads a PDF whole: one that ends too early or has a hole is refused.
CommandResult PdfExport::OpenPdf(PdfFile& pdf, const QString& path, int pageCount, bool isResult) const
{
    QString reason;
    if (!pdf.Open(path, reason))
        return CommandResult::Failure(QStringLiteral("Scribus made no whole PDF: %1.").arg(reason));
    if (pdf.CountPages() != pageCount)
        return CommandResult::Failure(QStringLiteral("Scribus made a PDF of %1 pages in the place of %2.")
                                          .arg(pdf.CountPages())
                                          .arg(pageCount));
    if (isResult && mSettings.IsX() && !pdf.BearsMarkOfX())
        return CommandResult::Failure(
            QStringLiteral("Scribus made a PDF that does not bear the mark of PDF/X."));
    return CommandResult::Success();
}

QJsonObject PdfExport::GetReport() const
{
    QJsonObject report = mReport;
    QStringList notes;
    for (const QJsonValue& note : report.value(QLatin1String("notes")).toArray())
        notes.append(note.toString());
    notes += mNotes;
    for (const QString& wish : mSettings.GetUnavailable())
        notes.append(QStringLiteral("Not available in this host: %1.").arg(wish));
    report.insert(QStringLiteral("settings"), mSettings.answers);
    report.insert(QStringLiteral("notes"), QJsonArray::fromStringList(notes));
    return report;
}

CommandResult PdfExport::Join(const std::vector<PdfBookPart>& parts, const QString& title,
                              const QString& output)
{
    PdfBook book(title);
    QString reason;
    for (const PdfBookPart& part : parts) {
        if (mRunner.IsCancelled())
            return CommandResult::Cancellation();
        if (!book.Add(part, reason))
            return CommandResult::Failure(
                QStringLiteral("\"%1\" can't be a part of this book: %2.").arg(part.name, reason));
    }
    // What becomes of the content was decided document by document.
    const bool isWritten = book.Write(GetPartPath(output), mSettings.MakeWishes(true), reason);
    const CommandResult result =
        isWritten
            ? CommandResult::Success()
            : CommandResult::Failure(QStringLiteral("The book's PDF can't be written: %1.").arg(reason));
    return Finish(result, GetPartPath(output), output);
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
