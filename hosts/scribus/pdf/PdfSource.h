#pragma once

#include "foundation/core/GResult.h"
#include "hosts/scribus/pdf/PdfSettings.h"
#include "hosts/scribus/runner/ScribusRunner.h"

class ScribusDocument;

// What Scribus exports: the document, or a copy of it that says what Scribus takes from a document alone.
class PdfSource
{
public:
    PdfSource(ScribusRunner& runner, const PdfSettings& settings) : mRunner(runner), mSettings(settings) {}

    // Finds the file to be exported; a copy of the document goes to the path. Fails where the document can't
    // be the kind of PDF/X that is asked for.
    GResult Make(ScribusDocument& document, const QString& copyPath);

    // From now on, the pages of documents are numbered from `firstNumber`, not as the document says.
    void SetFirstNumber(int firstNumber) { mFirstNumber = firstNumber; }

    const QString& GetPath() const { return mPath; }

    // The number for the first page behind the document, where it was numbered.
    int GetNextNumber() const { return mNextNumber; }

    // The numbers that the document's pages bear.
    const QStringList& GetPageNumbers() const { return mPageNumbers; }

    // What is to be told of the copy.
    const QStringList& GetNotes() const { return mNotes; }

private:
    GResult CheckProfile(const QString& profile) const;
    GResult Edit(QByteArray& text) const;
    QString FindProfile(const QString& wanted, bool ColorProfile::*kind) const;

    ScribusRunner& mRunner;
    const PdfSettings& mSettings;
    QString mPath;
    QStringList mNotes;
    QStringList mPageNumbers;
    int mFirstNumber = 0;  // 0: as the document says
    int mNextNumber = 0;
};
