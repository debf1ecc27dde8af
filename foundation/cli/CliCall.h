#pragma once

#include "foundation/cli/CliProgram.h"

#include <QMap>
#include <QStringList>

// A call of a program, read by the program's description. An option's value follows as the next word, or
// after "=" in the same word. Options and arguments may come in any order; after a "--" alone everything is
// an argument. If an option is given twice, the last value counts.
class CliCall
{
public:
    enum class Kind
    {
        cRun,         // GetCommand
        cHelp,        // of GetCommand; if that is null, of the group GetTopic or of the whole program
        cVersion,     // --version
        cManual,      // --manual: print the page of the manual
        cCompletion,  // --completion: print the script for the shell GetTopic
        cWrong        // GetError says why
    };

    // `words` are the words of the call without the program's name.
    static CliCall Read(const CliProgram& program, const QStringList& words);

    Kind GetKind() const { return mKind; }
    const CliCommand* GetCommand() const { return mCommand; }
    const QString& GetTopic() const { return mTopic; }

    // What is wrong: names the wrong word, and the nearest right one if there is one.
    const QString& GetError() const { return mError; }

    bool Has(const char* option) const { return mOptions.contains(QLatin1String(option)); }

    // All values of an option, in their order, and the last one; empty when it was not given.
    QStringList GetAll(const char* option) const { return mOptions.value(QLatin1String(option)); }
    QString Get(const char* option) const;

    const QStringList& GetArguments() const { return mArguments; }

    // An argument by its place; empty when it is not there.
    QString GetArgument(int place) const { return mArguments.value(place); }

    // Marks the call as wrong, although it is right by the description.
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

// The words of the call of this process, without the program's name. False if a word is not valid text in the
// system's encoding, because it would be changed without notice; `wrong` is the first such word.
[[nodiscard]] bool GetCliWords(int argc, char** argv, QStringList& words, QString& wrong);
