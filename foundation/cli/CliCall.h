#pragma once

#include "foundation/cli/CliProgram.h"

#include <QMap>
#include <QStringList>

// A call of a program, read by its description. An option's value stands behind it or behind "=" in the same
// word; options and arguments may stand in any order; behind a bare "--" everything is an argument. An option
// that is given twice has its last value.
class CliCall
{
public:
    enum class Kind
    {
        cRun,         // GetCommand
        cHelp,        // of GetCommand; of the group GetTopic, or of the whole program, where that is null
        cVersion,     // --version
        cManual,      // --manual: print the page of the manual
        cCompletion,  // --completion: print the script for the shell GetTopic
        cWrong        // GetError says why
    };

    // The words of a call, the program's name not among them.
    static CliCall Read(const CliProgram& program, const QStringList& words);

    Kind GetKind() const { return mKind; }
    const CliCommand* GetCommand() const { return mCommand; }
    const QString& GetTopic() const { return mTopic; }

    // What is wrong, with the wrong word in it and the nearest right one where there is one.
    const QString& GetError() const { return mError; }

    bool Has(const char* option) const { return mOptions.contains(QLatin1String(option)); }

    // All values of an option, in their order, and the last one; empty when it was not given.
    QStringList GetAll(const char* option) const { return mOptions.value(QLatin1String(option)); }
    QString Get(const char* option) const;

    const QStringList& GetArguments() const { return mArguments; }

    // An argument by its place; empty when it is not there.
    QString GetArgument(int place) const { return mArguments.value(place); }

    // Makes a call wrong that is right by the description only.
    CliCall& Refuse(const QString& error);

private:
    void ReadCompletion(const QStringList& words);
    void FindNamed(const CliProgram& program, QStringList& words);
    void ReadWords(const QStringList& words);
    void FindMissing();

    const CliCommand* mCommand = nullptr;
    Kind mKind = Kind::cRun;
    QString mTopic;
    QString mError;
    QMap<QString, QStringList> mOptions;
    QStringList mArguments;
};

// The words of the call of this process, without the program's name. False, with `wrong` the first that is no
// text in the system's encoding: such a word would change in silence.
[[nodiscard]] bool GetCliWords(int argc, char** argv, QStringList& words, QString& wrong);
