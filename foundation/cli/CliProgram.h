#pragma once

#include <vector>

// How a program can be called: its commands with their arguments and options. The same description is used to
// read a call (CliCall.h), and to make the help, the page of the manual (CliHelp.h) and the completion for
// shells (CliCompletion.h). All texts are English and in UTF-8.

// A word of a call whose meaning depends on its place.
struct CliArgument
{
    enum class Count
    {
        cOne,
        cOptional,
        cSome,  // one or more; the last argument only
        cAny
    };

    const char* name;  // as help shows it, in capitals
    const char* help;
    Count count = Count::cOne;
};

struct CliOption
{
    enum class Use
    {
        cOptional,
        cRequired,
        cRepeated  // any number of times
    };

    const char* name;  // without the "--"
    const char*
        values;  // the names of the values that follow it, as "FILE" or "GROUP KEY"; "": it is a switch
    const char* help;
    Use use = Use::cOptional;
};

struct CliExample
{
    const char* call;  // as typed into a shell
    const char* help;
};

// A name such as "zip list" makes "list" a command of the group "zip". A program that has no commands has one
// without a name. Every command takes --help too.
struct CliCommand
{
    const char* name;
    const char* summary;  // a line, without a full stop
    const char*
        help;  // paragraphs, with an empty line between; lines that begin with blanks stay as they are
    std::vector<CliArgument> arguments;
    std::vector<CliOption> options;
    std::vector<CliExample> examples;
};

// A heading of its own in the help and the manual.
struct CliSection
{
    const char* title;
    const char* help;  // as in CliCommand
};

struct CliProgram
{
    const char* name;
    const char* summary;
    const char* help;
    std::vector<CliCommand> commands;
    std::vector<CliSection> sections;
};

// What every program checks before it prints bold text.
inline const CliSection cCliStyle = {
    "bold text",
    "  NO_COLOR        when set, nothing is printed bold; CLICOLOR=0 does the same\n"
    "  CLICOLOR_FORCE  when set, headings are bold even when no terminal shows them"};

// The meaning of the exit statuses of our programs.
constexpr int cCliDone = 0;
constexpr int cCliFailed = 1;
constexpr int cCliWrongCall = 2;
