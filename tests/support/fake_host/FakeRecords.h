#pragma once

#include "plugin/host/IApplication.h"
#include "plugin/host/ICommand.h"
#include "plugin/host/IPackage.h"

#include <QStringList>

#include <map>
#include <vector>

// What a FakeHost holds and what it was told, as plain values.

struct FakeDocument
{
    QString path;  // empty for a document that was never saved
    QString name;
    bool isSaved = true;
    bool isOpen = true;  // by the user; documents of a book may be closed
    int pageCount = 1;
    QStringList missingFonts;
};

struct FakeBook
{
    QString path;  // empty for a book that was never saved
    QString name;
    QStringList documentPaths;
    bool isModified = false;
};

// The pages of a document are numbered from 1; page n has this UID.
constexpr UID GetPageUID(int number)
{
    return 1000 + static_cast<UID>(number);
}

// A command that the plug-in created, with everything that it was given.
struct FakeCommandRecord
{
    ClassID commandClass = 0;
    QString jobOptionsPath;
    QByteArray jobOptions;  // as they were when the command read them
    std::map<PDFSwitch, bool> switches;
    std::map<PDFLength, double> lengths;
    int32_t readerSpreads = cReaderSpreadsOff;
    QString outputPath;
    std::vector<UID> pages;
    bool isSpreads = false;
    QString name;
    QString bookPath;
    int documentCount = 0;
    bool hasRun = false;
};

struct FakePackageRecord
{
    QString sourcePath;  // the document or book
    QString folder;
    std::vector<std::pair<PackageSetting, bool>> settings;  // in the order in which it was told them
    bool hasRun = false;
};
