#pragma once

#include "foundation/cli/CliProgram.h"

#include <QString>
#include <QVector>

// Pieces of text that help, manual and completion make of a description.
namespace CliText
{
struct Paragraph
{
    QString text;
    bool isAsItStands;  // lines that begin with blanks are not filled
};

// The paragraphs of a help text. In a paragraph that is filled, each line ends with a blank.
QVector<Paragraph> Split(const char* help);

// An option with the names of its values, as "--job-options FILE".
QString GetOption(const CliOption& option);

// A whole call, as "hopboxctl create NAME --job-options FILE [--json]". Where a line must not be broken, a
// no-break space is used instead of a blank.
QString GetCall(const CliProgram& program, const CliCommand& command);
}  // namespace CliText
