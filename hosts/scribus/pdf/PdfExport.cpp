#include "hosts/scribus/pdf/PdfExport.h"

#include "foundation/core/GErrorCodes.h"
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

GResult PdfExport::Check(ScribusDocument& document, const QVector<int>& pages) const
{
    const QString fault = mSettings.FindFault();
    if (!fault.isEmpty())
        return GResult::Failure(QStringLiteral("The PDF settings can't be used: %1.").arg(fault));
    const DocumentInfo* info = document.GetInfo();
    if (info == nullptr)
        return GResult::Failure(document.GetError());
    const QStringList missing = info->GetMissingFonts();
    if (!missing.isEmpty())
        return GResult::Failure(QStringLiteral("Fonts of \"%1\" are missing: %2.")
                                    .arg(document.GetName(), missing.join(QStringLiteral(", "))));
    const bool areThere = std::all_of(pages.begin(), pages.end(),
                                      [info](int page) { return page >= 0 && page < info->pages.size(); });
    if (pages.isEmpty() || !areThere)
        return GResult::Failure(
            QStringLiteral("\"%1\" does not have the pages to be exported.").arg(document.GetName()));
    return GResult::Success();
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
GResult PdfExport::Permit(const QString& documentName, const QStringList& problems)
{
    QStringList fresh;
    for (const QString& problem : problems) {
        if (!mNotes.contains(problem))
            fresh.append(problem);
    }
    fresh.removeDuplicates();
    if (fresh.isEmpty())
        return GResult::Success();
    using Decision = IHostFrontend::Decision;
    IHostFrontend* const frontend = mRunner.GetFrontend();
    switch (frontend == nullptr ? Decision::Refuse : frontend->AskToGoOn(documentName, fresh)) {
        case Decision::GoOn:
            mNotes += fresh;
            return GResult::Success();
        case Decision::Cancel:
            return GResult::Cancellation();
        case Decision::Refuse:
            break;
    }
    return GResult::Failure(fresh.join(QLatin1Char(' ')));
}

GResult PdfExport::ExportPages(ScribusDocument& document, const QVector<int>& pages, const QString& output)
{
    mNotes.clear();
    GResult result = Check(document, pages);
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
        if (result.HasSucceeded() && FileStamp::Of(document.GetContentPath()) != stamp)
            result = GResult::Failure(
                QStringLiteral("\"%1\" was changed while it was exported.").arg(document.GetName()));
        if (result.HasSucceeded())
            result = FinishPdf(check, paths, document.GetName(), embedsPlaced, isWorthAnother);
        if (!isWorthAnother)
            break;
        mNotes.append(result.GetReason() + QStringLiteral(" It was turned into an image."));
    }
    QFile::remove(paths.written);
    return Finish(result, paths.finished, output);
}

// Makes of Scribus's PDF what was asked for. `isWorthAnother` says that it failed for a placed file alone.
GResult PdfExport::FinishPdf(PdfCheck& check, const Paths& paths, const QString& documentName,
                             bool embedsPlaced, bool& isWorthAnother)
{
    const int pageCount = check.CountPages();
    PdfFile pdf;
    const auto checkProbe = [&] {
        PdfFile probe;
        return mSettings.MayBeTransparent() || !embedsPlaced
                   ? GResult::Success()
                   : OpenPdf(probe, paths.probe, pageCount, false).Then([&] {
                         return check.CheckTransparency(probe);
                     });
    };
    const auto checkForX = [&] {
        bool isPlaced = false;
        const GResult result = mSettings.IsX() ? check.CheckForX(pdf, isPlaced) : GResult::Success();
        isWorthAnother = !result.HasSucceeded() && isPlaced && embedsPlaced;
        return result;
    };
    return OpenPdf(pdf, paths.written, pageCount)
        .Then(checkProbe)
        .Then(checkForX)
        .Then([&] { return Permit(documentName, check.CheckImages(pdf)); })
        .Then([&] { return check.CheckFonts(pdf); })
        .Then([&] { return ChangePdf(pdf, check, paths.finished); });
}

GResult PdfExport::ChangePdf(PdfFile& pdf, const PdfCheck& check, const QString& path)
{
    const PdfWishes wishes = mSettings.MakeWishes(check.ManagesColors());
    mReport = check.Describe(pdf);
    const auto isCancelled = [this] { return mRunner.IsCancelled(); };
    const auto isGray = [&](const PdfImage& image) { return check.IsGray(image); };
    return pdf.Change(wishes, isGray, isCancelled)
        .Then([&] { return pdf.Write(path, wishes); })
        .Within(QStringLiteral("The PDF can't be finished: "), QStringLiteral("."));
}

// Reads a PDF whole: one that ends too early or has a hole is refused.
GResult PdfExport::OpenPdf(PdfFile& pdf, const QString& path, int pageCount, bool isResult) const
{
    const GResult opened = pdf.Open(path);
    if (!opened.HasSucceeded())
        return opened.Within(QStringLiteral("Scribus made no whole PDF: "), QStringLiteral("."));
    if (pdf.CountPages() != pageCount)
        return GResult::Failure(QStringLiteral("Scribus made a PDF of %1 pages in the place of %2.")
                                    .arg(pdf.CountPages())
                                    .arg(pageCount));
    if (isResult && mSettings.IsX() && !pdf.BearsMarkOfX())
        return GResult::Failure(QStringLiteral("Scribus made a PDF that does not bear the mark of PDF/X."));
    return GResult::Success();
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

GResult PdfExport::Join(const std::vector<PdfBookPart>& parts, const QString& title, const QString& output)
{
    PdfBook book(title);
    for (const PdfBookPart& part : parts) {
        if (mRunner.IsCancelled())
            return GResult::Cancellation();
        const GResult added = book.Add(part);
        if (!added.HasSucceeded())
            return added.Within(QStringLiteral("\"%1\" can't be a part of this book: ").arg(part.name),
                                QStringLiteral("."));
    }
    // What becomes of the content was decided document by document.
    const GResult written = book.Write(GetPartPath(output), mSettings.MakeWishes(true));
    return Finish(written.Within(QStringLiteral("The book's PDF can't be written: "), QStringLiteral(".")),
                  GetPartPath(output), output);
}

// A large PDF takes its time to be written: the user may have pressed Cancel since the last look.
GResult PdfExport::Finish(const GResult& result, const QString& part, const QString& output) const
{
    const GResult finished = result.Then([&] {
        return GResult::Catch([&] {
            if (!GFileCalls::RenameFile(GPathName(part), GPathName(output), true))
                throw GCustomException(GErrorCode::cFile,
                                       QStringLiteral("\"%1\" can't be put in place: %2.")
                                           .arg(output, GetReasonText(GetLastSystemError())));
        });
    });
    if (!finished.HasSucceeded())
        QFile::remove(part);
    if (!finished.HasSucceeded() || !mRunner.IsCancelled())
        return finished;
    QFile::remove(output);
    return GResult::Cancellation();
}
