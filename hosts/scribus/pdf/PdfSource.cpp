#include "hosts/scribus/pdf/PdfSource.h"

#include "hosts/scribus/documents/ScribusDocument.h"
#include "hosts/scribus/pdf/Preflight.h"
#include "hosts/scribus/runner/ScribusRunner.h"
#include "hosts/scribus/sla/SlaContent.h"
#include "hosts/scribus/sla/SlaFile.h"
#include "hosts/scribus/sla/SlaLinks.h"
#include "hosts/scribus/sla/SlaNumbering.h"
#include "hosts/scribus/sla/SlaScanner.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

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

GResult PdfSource::CheckProfile(const QString& profile) const
{
    QStringList installed;
    for (const ColorProfile& candidate : mRunner.GetProfiles()) {
        if (candidate.isCmykOutput && candidate.name == profile)
            return GResult::Success();
        if (candidate.isCmykOutput)
            installed.append(candidate.name);
    }
    return GResult::Failure(
        QStringLiteral("PDF/X needs the colour profile of a press. \"%1\" is none that is installed (%2).")
            .arg(profile, installed.join(QStringLiteral(", "))));
}

// The profile of that name, or the first of its kind: Scribus manages no colours at all where one that a
// document names is not installed.
QString PdfSource::FindProfile(const QString& wanted, bool ColorProfile::*kind) const
{
    QString found;
    for (const ColorProfile& profile : mRunner.GetProfiles()) {
        if (profile.*kind && (profile.name == wanted || found.isEmpty()))
            found = profile.name;
    }
    return found;
}

namespace
{
// Replacements in a document's text, whatever their order.
class Changes
{
public:
    void Add(const SlaScanner& element, const char* attribute, const QString& value)
    {
        if (element.Has(attribute))
            mChanges.emplace_back(element.GetPlace(attribute), value);
    }

    QByteArray Apply(const QByteArray& text)
    {
        std::sort(mChanges.begin(), mChanges.end(),
                  [](const auto& left, const auto& right) { return left.first.offset < right.first.offset; });
        SlaEdit edit(text);
        for (const auto& [place, value] : mChanges)
            edit.Replace(place, value);
        return edit.Finish();
    }

private:
    std::vector<std::pair<SlaScanner::Place, QString>> mChanges;
};
}  // namespace

GResult PdfSource::Edit(QByteArray& text) const
{
    Changes changes;
    SlaScanner element({text.constData(), static_cast<size_t>(text.size())});
    bool isDocumentKnown = false;
    bool isIntentKnown = !mSettings.IsX();
    while (element.Next() && !(isDocumentKnown && isIntentKnown)) {
        if (element.GetName() == "DOCUMENT" && element.Has("HCMS")) {
            if (mSettings.KeepsColors()) {
                for (const char* name : {"HCMS", "DPuse"})
                    changes.Add(element, name, QStringLiteral("1"));
            }
            for (const char* name : {"DPIn", "DPIn2"})
                changes.Add(element, name, FindProfile(element.GetText(name), &ColorProfile::isRgb));
            for (const char* name : {"DPPr", "DPInCMYK", "DPIn3"})
                changes.Add(element, name, FindProfile(element.GetText(name), &ColorProfile::isCmykOutput));
            isDocumentKnown = true;
        } else if (element.GetName() == "PDF" && element.Has("PrintP") && element.Has("InfoString")) {
            const QString profile =
                mSettings.outputProfile.isEmpty() ? element.GetText("PrintP") : mSettings.outputProfile;
            const GResult check = mSettings.IsX() ? CheckProfile(profile) : GResult::Success();
            if (!check.HasSucceeded())
                return check;
            changes.Add(element, "PrintP", profile);
            // Scribus makes a PDF/X only with some text there.
            changes.Add(element, "InfoString", profile);
            isIntentKnown = true;
        }
    }
    if (!isDocumentKnown || !isIntentKnown)
        return GResult::Failure(QStringLiteral("Scribus wrote no settings of colours into its document."));
    text = changes.Apply(text);
    return GResult::Success();
}

static QStringList GetNumbers(const DocumentInfo& info)
{
    QStringList numbers;
    for (const DocumentPage& page : info.pages)
        numbers.append(page.number);
    return numbers;
}

GResult PdfSource::Make(ScribusDocument& document, const QString& copyPath)
{
    mPath = document.GetContentPath();
    const DocumentInfo& info = *document.GetInfo();
    const bool areAllThere = Preflight::FindMissingProfiles(info, mRunner).isEmpty();
    for (const auto kind : {&ColorProfile::isRgb, &ColorProfile::isCmykOutput}) {
        if (mSettings.KeepsColors() && FindProfile(QString(), kind).isEmpty())
            mNotes += QStringLiteral("Scribus has no colour profile for RGB or CMYK: RGB becomes CMYK.");
    }
    mNotes.removeDuplicates();
    mPageNumbers = GetNumbers(info);
    const bool isFine = info.managesColors ? areAllThere : !mSettings.KeepsColors();
    const bool hasFineColors = !mSettings.IsX() && isFine;
    if (hasFineColors && mFirstNumber == 0)
        return GResult::Success();
    QByteArray text;
    bool isPacked = false;
    const GResult read = SlaFile::Read(document.GetPresentForm(), text, isPacked);
    if (!read.HasSucceeded())
        return read;
    text = SlaLinks::MakeLinksAbsolute(text, QFileInfo(document.GetPresentForm()).path());
    const GResult edited = hasFineColors ? GResult::Success() : Edit(text);
    if (!edited.HasSucceeded())
        return edited;
    if (mFirstNumber > 0) {
        text = SlaNumbering::Continue(text, mFirstNumber, mNextNumber);
        DocumentInfo numbered;
        numbered.pages.resize(info.pages.size());
        SlaContent::Read(text, QFileInfo(copyPath).path(), numbered);
        mPageNumbers = GetNumbers(numbered);
    }
    const GResult written = SlaFile::Write(copyPath, text, false);
    if (!written.HasSucceeded())
        return written;
    mPath = copyPath;
    const QDir folder = QFileInfo(copyPath).dir();
    return CopyOwnFonts(document, folder)
               ? GResult::Success()
               : GResult::Failure(
                     QStringLiteral("The document's fonts can't be copied to \"%1\".").arg(folder.path()));
}
