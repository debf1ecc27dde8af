#include "hosts/scribus/documents/ScribusDocument.h"

#include "foundation/trace/GTrace.h"
#include "hosts/scribus/documents/DocumentInquiry.h"
#include "hosts/scribus/runner/ScribusRunner.h"
#include "hosts/scribus/sla/SlaContent.h"
#include "hosts/scribus/sla/SlaFile.h"
#include "hosts/scribus/sla/SlaFonts.h"
#include "hosts/scribus/sla/SlaLinks.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>

#include <algorithm>

constexpr int cPreviewsKept = 16;

namespace
{
void RemoveFile(QString& path)
{
    if (!path.isEmpty())
        QFile::remove(path);
    path.clear();
}

PageSide GetSide(int scribusType, bool hasFacingPages)
{
    static const PageSide cSides[] = {PageSide::Left, PageSide::Middle, PageSide::Right};
    return hasFacingPages && scribusType >= 0 && scribusType < 3 ? cSides[scribusType] : PageSide::Single;
}

void ReadAnswer(const QJsonObject& answer, DocumentInfo& info)
{
    for (const QJsonValue& page : answer.value(QLatin1String("pages")).toArray()) {
        DocumentPage read;
        read.width = page[QLatin1String("width")].toDouble();
        read.height = page[QLatin1String("height")].toDouble();
        info.pages.append(read);
    }
    for (const QJsonValue& font : answer.value(QLatin1String("fonts")).toArray()) {
        info.fonts.append({font[QLatin1String("name")].toString(), font[QLatin1String("file")].toString(),
                           font[QLatin1String("missing")].toBool()});
    }
}

void ReadSides(const QJsonObject& answer, DocumentInfo& info)
{
    const QJsonArray pages = answer.value(QLatin1String("pages")).toArray();
    for (int i = 0; i < info.pages.size(); ++i)
        info.pages[i].side = GetSide(pages[i][QLatin1String("side")].toInt(), info.hasFacingPages);
}
void AddProfiles(const QStringList& profiles, QStringList& all)
{
    all += profiles;
    all.removeDuplicates();
    all.sort();
}

// Scribus lists the fonts of unused styles too.
void KeepFonts(const QSet<QString>& used, QVector<DocumentFont>& fonts)
{
    fonts.erase(std::remove_if(fonts.begin(), fonts.end(),
                               [&](const DocumentFont& font) { return !used.contains(font.name); }),
                fonts.end());
}
}  // namespace

ScribusDocument::ScribusDocument(ScribusRunner& runner, const QString& path)
    : mRunner(runner), mPath(QDir::cleanPath(QDir().absoluteFilePath(path)))
{
}

ScribusDocument::~ScribusDocument()
{
    Forget();
    RemoveFile(mContentPath);
}

void ScribusDocument::Forget()
{
    mInfo.reset();
    mPreviews.clear();
    mError.clear();
    RemoveFile(mPresentForm);
}

GResult ScribusDocument::MakeFromTemplate(ScribusRunner& runner, const QString& templatePath, int number,
                                          std::shared_ptr<ScribusDocument>& document)
{
    const auto made = std::make_shared<ScribusDocument>(runner, templatePath);
    const QString content = runner.MakeScratchPath(QStringLiteral("sla"));
    return SlaLinks::CopyDocument(made->mPath, content).Then([&] {
        made->mContentPath = content;
        made->mPath.clear();
        made->mUntitledName = QStringLiteral("Untitled-%1").arg(number);
        document = made;
        return GResult::Success();
    });
}

QString ScribusDocument::GetName() const
{
    return mPath.isEmpty() ? mUntitledName : QFileInfo(mPath).fileName();
}

GResult ScribusDocument::SaveAs(const QString& path)
{
    const QString target = QDir::cleanPath(QDir().absoluteFilePath(path));
    if (target == mPath)
        return GResult::Success();
    return SlaLinks::CopyDocument(GetContentPath(), target).Then([&] {
        mPath = target;
        RemoveFile(mContentPath);
        return GResult::Success();
    });
}

bool ScribusDocument::IsDescribed() const
{
    return mInfo != nullptr && mStamp == FileStamp::Of(GetContentPath());
}

const DocumentInfo* ScribusDocument::GetInfo()
{
    static_cast<void>(Ask({this}, nullptr));  // what went wrong is in mError
    return mInfo.get();
}

GResult ScribusDocument::AskAbout(const std::vector<DocumentPtr>& documents,
                                  const std::function<void(const QString& path)>& beginStep)
{
    std::vector<ScribusDocument*> asked;
    for (const DocumentPtr& document : documents)
        asked.push_back(document.get());
    return asked.empty() ? GResult::Success() : Ask(asked, beginStep);
}

GResult ScribusDocument::Ask(const std::vector<ScribusDocument*>& documents,
                             const std::function<void(const QString& path)>& beginStep)
{
    std::vector<ScribusDocument*> asked;
    DocumentInquiry inquiry(documents.front()->mRunner);
    for (ScribusDocument* document : documents) {
        const FileStamp stamp = FileStamp::Of(document->GetContentPath());
        if (document->MakeReady(stamp)) {
            asked.push_back(document);
            inquiry.Add(document->GetContentPath(), stamp);
        }
    }
    const GResult result = inquiry.Run(beginStep);
    for (size_t i = 0; i < asked.size(); ++i) {
        const DocumentInquiry::Answer& answer = inquiry.GetAnswers()[i];
        asked[i]->UseAnswer(answer.values, answer.presentForm,
                            answer.isThere ? answer.error : result.GetReason());
    }
    return result;
}

// Makes room for what is to be asked. False when nothing is: all is known, or there is nothing to ask about.
bool ScribusDocument::MakeReady(const FileStamp& stamp)
{
    if (stamp == mStamp && mInfo != nullptr)
        return false;
    Forget();
    mStamp = stamp;
    if (!stamp.Exists())
        mError = QStringLiteral("There is no file \"%1\".").arg(GetContentPath());
    else
        mError = SlaFile::CheckBeginning(GetContentPath()).GetReason();
    if (mError.isEmpty())
        return true;
    mStamp = FileStamp();  // looked at again at the next call
    GTrace::Error(QStringLiteral("ScribusDocument::GetInfo"), mError);
    return false;
}

void ScribusDocument::UseAnswer(const QJsonObject& values, const QString& presentForm, const QString& error)
{
    QByteArray text;
    bool isPacked = false;
    mPresentForm = presentForm;
    mError = error.isEmpty() ? SlaFile::Read(presentForm, text, isPacked).GetReason() : error;
    if (mError.isEmpty()) {
        mInfo = std::make_unique<DocumentInfo>();
        ReadAnswer(values, *mInfo);
        SlaContent::Read(text, QFileInfo(presentForm).path(), *mInfo);
        ReadSides(values, *mInfo);
        KeepFonts(SlaFonts::FindUsed(text), mInfo->fonts);
        if (SlaFile::Read(GetContentPath(), text, isPacked).HasSucceeded())
            AddProfiles(SlaContent::FindProfiles(text), mInfo->profiles);
    }
    if (mInfo == nullptr || FileStamp::Of(GetContentPath()) != mStamp)
        mStamp = FileStamp();  // asked again at the next call, whatever went wrong
    if (!mError.isEmpty())
        GTrace::Error(QStringLiteral("ScribusDocument::GetInfo"), mError);
}

QImage ScribusDocument::GetPreview(int pageIndex, int dotsPerInch)
{
    const DocumentInfo* info = GetInfo();
    if (info == nullptr || pageIndex < 0 || pageIndex >= info->pages.size())
        return {};
    for (const Preview& preview : mPreviews) {
        if (preview.pageIndex == pageIndex && preview.dotsPerInch == dotsPerInch)
            return preview.image;
    }
    if (mPreviews.size() == cPreviewsKept)
        mPreviews.removeFirst();
    mPreviews.append({pageIndex, dotsPerInch, RenderPreview(pageIndex, dotsPerInch)});
    return mPreviews.last().image;
}

QImage ScribusDocument::RenderPreview(int pageIndex, int dotsPerInch)
{
    const QString picture = mRunner.MakeScratchPath(QStringLiteral("png"));
    const ScribusAnswer answer =
        mRunner.RunScript(QStringLiteral("preview"), {{QStringLiteral("document"), GetContentPath()},
                                                      {QStringLiteral("page"), pageIndex + 1},
                                                      {QStringLiteral("dpi"), dotsPerInch},
                                                      {QStringLiteral("output"), picture}});
    QImage image;
    if (answer.HasSucceeded())
        image.load(picture);
    QFile::remove(picture);
    return image;
}
