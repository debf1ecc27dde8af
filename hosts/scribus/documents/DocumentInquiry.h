#pragma once

#include "foundation/core/GResult.h"
#include "hosts/scribus/sla/DocumentInfo.h"

#include <QJsonObject>

#include <functional>
#include <vector>

class ScribusRunner;

// What Scribus says of documents: many in one start, and what it said before of a document that has not
// changed, without any.
class DocumentInquiry
{
public:
    // Called before Scribus comes to a document, with its path.
    using BeginStep = std::function<void(const QString& path)>;

    explicit DocumentInquiry(ScribusRunner& runner) : mRunner(runner) {}

    // Adds a document in the state of the stamp.
    void Add(const QString& path, const FileStamp& stamp);

    // Asks. Fails only when the user has cancelled; what goes wrong with a document is told there.
    GResult Run(const BeginStep& beginStep);

    // For the documents in the order in which they were added.
    struct Answer
    {
        QString path;  // of the document
        FileStamp stamp;
        QJsonObject values;   // as host.py has them
        QString presentForm;  // a file of the runner's with the document in it; the caller's to remove
        QString error;        // for people; empty for an answer
        bool isThere = false;
    };
    const std::vector<Answer>& GetAnswers() const { return mAnswers; }

private:
    [[nodiscard]] bool FindKept(Answer& answer) const;
    void Keep(const Answer& answer) const;
    GResult AskScribus(const BeginStep& beginStep);
    [[nodiscard]] bool ReadAnswer(Answer& answer, const QString& path);

    ScribusRunner& mRunner;
    std::vector<Answer> mAnswers;
};
