#pragma once

#include "hosts/layout_host/commandline/DialogDriver.h"

#include <QStringList>

#include <optional>

// What the call of layout-host asks for.
struct CommandLine
{
    // Reads the call of this process. Gives the exit status where nothing is left to do: help was asked for,
    // or the call was wrong, which is told.
    static std::optional<int> Read(int argc, char** argv, CommandLine& line);

    QString jobOptions;     // to be reported on, and nothing else; empty: none
    bool isExport = false;  // run one export and end; else show the window, with `files` open in it
    QStringList files;      // documents and books; exactly one for an export
    bool isBook = false;    // whether that one is a book
    DialogChoices choices;  // of an export
    bool isForced = false;  // exports what lacks an image or a profile, or has too few dots
    int seconds = 300;      // how long an export may take
};
