#pragma once

#include "hosts/layout_host/commandline/DialogDriver.h"

#include <QStringList>

// What the call of layout-host asks for.
struct CommandLine
{
    enum class Mode
    {
        Window,  // show the window, with `files` open in it
        Export,  // run one export and end
        Help,
        Wrong  // no call of this program: `error` says why
    };

    static QString GetUsage();

    // Takes the arguments apart, the program's name not among them.
    static CommandLine Parse(const QStringList& arguments);

    Mode mode = Mode::Wrong;
    QString error;
    QStringList files;      // documents and books; exactly one for an export
    bool isBook = false;    // whether that one is a book
    DialogChoices choices;  // of an export
    int seconds = 300;      // how long an export may take
};
