#pragma once

#include "hosts/scribus/runner/ScribusRunner.h"

#include <QTemporaryDir>

// Scribus behind a script that notes how it was started last, so that the same start can be repeated with
// nothing around it.
class RecordedScribus
{
public:
    RecordedScribus();

    // A set-up whose Scribus is the script.
    ScribusSetup GetSetup() const;

    // Starts Scribus as it was started last and waits for its end. False when it writes no file.
    bool Repeat() const;

    // Has Scribus write a document by a script of its own; gives the document's path.
    static QString MakeDocument(const QString& script, const QString& path);

private:
    QStringList Read(const char* name) const;

    QTemporaryDir mFolder;
};
