#pragma once

#include "hosts/scribus/pdf/PdfSettings.h"
#include "joboptions/PostScriptValue.h"

#include <functional>
#include <vector>

class JobOptions;

// A setting that job options may have, and what this host answers to it. The rows are the one place that
// knows settings: the export takes them from here, its report and docs/job-options.md tell them.
struct JobOptionRow
{
    // Where a setting stands.
    enum class Section
    {
        Parameters,
        Device,
        Namespaces  // the dictionaries of "OtherNamespaces", which hold what belongs to a layout application
    };

    enum class Answer
    {
        Honoured,      // by Scribus
        Afterwards,    // honoured by work on the PDF that Scribus has made
        Approximated,  // something close to it
        NotPossible,
        NoMeaning  // it is for other work than the export of a laid out document
    };

    Section section;
    const char* key;
    Answer answer;
    const char* exact;  // values that are honoured all the same, between bars; null for none
    const char* note;   // what happens, for people

    // The value's type, and what takes it; false when it is out of bounds. A name that is not known changes
    // nothing. Rows without `take` are never looked at by an export.
    PostScriptValue::Type type = PostScriptValue::Type::Null;
    std::function<bool(const PostScriptValue& value, PdfSettings& settings)> take = nullptr;

    // The value that job options give the setting; null for none.
    const PostScriptValue* Find(const JobOptions& options) const;

    // In an order in which a later row may overrule an earlier one; each setting once.
    static const std::vector<JobOptionRow>& GetAll();

    // Those that an export takes: of the whole, of images; and the others.
    static std::vector<JobOptionRow> MakeTaken();
    static std::vector<JobOptionRow> MakeImages();
    static std::vector<JobOptionRow> MakeOthers();
};
