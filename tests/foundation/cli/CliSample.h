#pragma once

#include "foundation/cli/CliProgram.h"

// A program with commands of every kind.
inline const CliProgram& GetSampleProgram()
{
    static const CliProgram program = {
        "tool",
        "does things",
        "First paragraph, of a line.\n\n  kept\n   as it stands",
        {{"make",
          "make a thing",
          "",
          {{"NAME", "the thing"}},
          {{"from", "FILE", "what it is made of", CliOption::Use::cRequired},
           {"part", "KEY=VALUE", "a part: it's [one] of 'many'", CliOption::Use::cRepeated},
           {"fast", "", "be quick"}},
          {{"tool make it --from a.txt", ".Makes it - really."}}},
         {"keep", "keep values", "", {}, {{"set", "GROUP KEY", "two values"}}, {}},
         {"pack list",
          "list packs",
          "",
          {{"FILE", "one"}, {"DIR", "more", CliArgument::Count::cAny}},
          {},
          {}},
         {"pack make", "make packs", "", {{"WORD", "words", CliArgument::Count::cSome}}, {}, {}},
         {"maybe", "take or leave", "", {{"WORD", "a word", CliArgument::Count::cOptional}}, {}, {}}},
        {{"exit status", "  0  done"}}};
    return program;
}
