#pragma once

#include "foundation/core/GResult.h"
#include "hosts/scribus/sla/DocumentInfo.h"

#include <QImage>
#include <QJsonObject>
#include <QString>

#include <functional>
#include <memory>
#include <vector>

class ScribusRunner;

// A document that is open in this host: its file, and what Scribus reports of it.
//
// Scribus is asked once for each state of the file, which is remembered between runs of the program; a file
// that was changed since is asked about again. A
// document without a file is one made from a template and not saved yet: its content is in a folder of the
// host's own until Save. For the main thread.
class ScribusDocument
{
public:
    // Over a file that exists; nothing is read yet.
    ScribusDocument(ScribusRunner& runner, const QString& path);
    ~ScribusDocument();
    ScribusDocument(const ScribusDocument&) = delete;
    ScribusDocument& operator=(const ScribusDocument&) = delete;

    // A new document with the content of the template; its name is "Untitled" with the number. Fails, and
    // leaves `document` as it was, when the template can't be read.
    static GResult MakeFromTemplate(ScribusRunner& runner, const QString& templatePath, int number,
                                    std::shared_ptr<ScribusDocument>& document);

    // The file's absolute path; empty for an untitled document.
    const QString& GetPath() const { return mPath; }

    // The file's name, or "Untitled-1" and so on.
    QString GetName() const;

    // Whether the file holds the document: false only for one that was never saved. A document that somebody
    // else changed on disk counts as saved, as the host holds nothing that the file lacks.
    bool IsSaved() const { return !mPath.isEmpty(); }

    // Writes the document to a file and makes it that document's file. Links stay good, wherever it goes. A
    // file that is there is replaced in one step.
    GResult SaveAs(const QString& path);

    // The file to read: the document's own, or that of an untitled document's content.
    const QString& GetContentPath() const { return mPath.isEmpty() ? mContentPath : mPath; }

    // Asks Scribus about all those documents that it has not described in their present state, in one start
    // where that is possible. `beginStep` is told the path of each before its turn. What goes wrong with a
    // document is in its GetError; this fails only when the user has cancelled.
    using DocumentPtr = std::shared_ptr<ScribusDocument>;
    static GResult AskAbout(const std::vector<DocumentPtr>& documents,
                            const std::function<void(const QString& path)>& beginStep);

    // Whether Scribus has described the file as it now stands.
    bool IsDescribed() const;

    // What Scribus reports, asked anew where the file has changed. Null, with the reason in GetError, when
    // there is no file or Scribus can't read it. Valid until the next call.
    const DocumentInfo* GetInfo();

    // The same document in Scribus's present form, as it stood when GetInfo last described it: a file of the
    // host's own, with the document's links. Empty where there is no description.
    const QString& GetPresentForm() const { return mPresentForm; }

    // The stamp of the file that GetInfo last described.
    const FileStamp& GetStamp() const { return mStamp; }
    const QString& GetError() const { return mError; }

    // A picture of the page at an index from 0; null when Scribus can't make one. Kept for the last few pages
    // of the file's state.
    QImage GetPreview(int pageIndex, int dotsPerInch);

private:
    struct Preview
    {
        int pageIndex;
        int dotsPerInch;
        QImage image;
    };

    static GResult Ask(const std::vector<ScribusDocument*>& documents,
                       const std::function<void(const QString& path)>& beginStep);
    void Forget();
    [[nodiscard]] bool MakeReady(const FileStamp& stamp);
    void UseAnswer(const QJsonObject& values, const QString& presentForm, const QString& error);
    QImage RenderPreview(int pageIndex, int dotsPerInch);

    ScribusRunner& mRunner;
    QString mPath;
    QString mContentPath;
    QString mUntitledName;
    QString mPresentForm;
    FileStamp mStamp;
    QString mError;
    std::unique_ptr<DocumentInfo> mInfo;
    QVector<Preview> mPreviews;
};
