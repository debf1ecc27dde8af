#include "hosts/scribus/pdf/JobOptionRows.h"

// The settings that change nothing in an export of this host, and why.

namespace
{
using Section = JobOptionRow::Section;
using Answer = JobOptionRow::Answer;

const JobOptionRow cOthers[] = {
    // Honoured, as there is only one way that this host goes.
    {Section::Parameters, "AllowTransparency", Answer::Approximated, "true",
     "transparency stays where the kind of PDF has it; a page with transparency is refused in PDF 1.3, "
     "PDF/X-1a and PDF/X-3"},
    {Section::Parameters, "PDFXCompliantPDFOnly", Answer::Approximated, "true",
     "a document that can't be the kind of PDF/X is always refused"},
    {Section::Parameters, "PDFXNoTrimBoxError", Answer::Honoured, nullptr, "each page has a trim box"},
    {Section::Parameters, "PassThroughJPEGImages", Answer::Approximated, "false",
     "JPEG images of placed PDFs stay as they are; linked ones are compressed anew, as the filter says"},
    {Section::Parameters, "PreserveOverprintSettings", Answer::Approximated, "true",
     "overprinting stays as the document has it"},
    {Section::Parameters, "OPM", Answer::Approximated, "1", "overprinting is of mode 1"},
    {Section::Parameters, "MaxSubsetPct", Answer::Approximated, "100",
     "where fonts are reduced to the characters in use, all are"},
    {Section::Parameters, "EmbedOpenType", Answer::Approximated, "false",
     "fonts are inside as Scribus writes them"},
    {Section::Parameters, "ColorImageDepth", Answer::NotPossible, "-1|8", "samples have 8 bits"},
    {Section::Parameters, "GrayImageDepth", Answer::NotPossible, "-1|8", "samples have 8 bits"},
    {Section::Parameters, "MonoImageDepth", Answer::NotPossible, "-1|1", "samples have one bit"},
    {Section::Parameters, "ColorImageMinDownsampleDepth", Answer::NotPossible, "1",
     "images of any depth are reduced"},
    {Section::Parameters, "GrayImageMinDownsampleDepth", Answer::NotPossible, "2",
     "images of any depth are reduced"},
    {Section::Parameters, "AntiAliasColorImages", Answer::NotPossible, "false",
     "images are never made smoother"},
    {Section::Parameters, "AntiAliasGrayImages", Answer::NotPossible, "false",
     "images are never made smoother"},
    {Section::Parameters, "AntiAliasMonoImages", Answer::NotPossible, "false",
     "images are never made smoother"},
    {Section::Parameters, "ColorImageAutoFilterStrategy", Answer::Approximated, "/JPEG", "JPEG in any case"},
    {Section::Parameters, "GrayImageAutoFilterStrategy", Answer::Approximated, "/JPEG", "JPEG in any case"},
    {Section::Parameters, "ConvertImagesToIndexed", Answer::NotPossible, "false", "images have no palette"},
    {Section::Parameters, "ASCII85EncodePages", Answer::NotPossible, "false", "the content is binary"},
    {Section::Parameters, "CropColorImages", Answer::NotPossible, "false", "images stay whole"},
    {Section::Parameters, "CropGrayImages", Answer::NotPossible, "false", "images stay whole"},
    {Section::Parameters, "CropMonoImages", Answer::NotPossible, "false", "images stay whole"},
    {Section::Parameters, "DefaultRenderingIntent", Answer::Approximated, "/Default",
     "the document's own rendering intents"},
    {Section::Parameters, "CalCMYKProfile", Answer::Approximated, "()|(None)", "the document's own profiles"},
    {Section::Parameters, "CalGrayProfile", Answer::Approximated, "()|(None)", "gray has no profile"},
    {Section::Parameters, "CalRGBProfile", Answer::Approximated, "()|(None)", "the document's own profiles"},
    {Section::Parameters, "sRGBProfile", Answer::Approximated, "()|(None)", "Scribus's own sRGB"},
    {Section::Parameters, "ColorSettingsFile", Answer::Approximated, "()|(None)",
     "the document's own settings"},
    {Section::Parameters, "AlwaysEmbed", Answer::Approximated, "[]|[true]",
     "EmbedAllFonts decides for all fonts"},
    {Section::Parameters, "NeverEmbed", Answer::NotPossible, "[]|[true]",
     "EmbedAllFonts decides for all fonts"},
    {Section::Parameters, "PDFXSetBleedBoxToMediaBox", Answer::NotPossible, "false",
     "the bleed box is that of the bleed"},
    {Section::Parameters, "PDFXBleedBoxToTrimBoxOffset", Answer::NotPossible, "[0 0 0 0]",
     "the bleed box is that of the bleed"},
    {Section::Parameters, "PDFXTrimBoxToMediaBoxOffset", Answer::NotPossible, "[0 0 0 0]",
     "the trim box is the page"},
    {Section::Parameters, "EmbedJobOptions", Answer::NotPossible, "false", "job options are not put inside"},
    {Section::Parameters, "CreateJobTicket", Answer::NotPossible, "false",
     "the PDF has no job ticket inside"},
    {Section::Parameters, "CreateJDFFile", Answer::NotPossible, "false", "no such file is written"},
    {Section::Parameters, "AutoRotatePages", Answer::NotPossible, "/None", "pages stay as they are turned"},
    {Section::Parameters, "DetectBlends", Answer::NotPossible, "false", "blends stay as Scribus draws them"},
    {Section::Parameters, "DetectCurves", Answer::NotPossible, "0", "curves stay as Scribus draws them"},
    {Section::Parameters, "StartPage", Answer::NotPossible, "1", "the pages are chosen with the export"},
    {Section::Parameters, "EndPage", Answer::NotPossible, "-1", "the pages are chosen with the export"},

    {Section::Namespaces, "IncludeNonPrinting", Answer::NotPossible, "false",
     "what is not to be printed is left out"},
    {Section::Namespaces, "IncludeGuidesGrids", Answer::NotPossible, "false",
     "guides and grids are left out"},
    {Section::Namespaces, "OmitPlacedBitmaps", Answer::NotPossible, "false", "images are never left out"},
    {Section::Namespaces, "OmitPlacedEPS", Answer::NotPossible, "false", "placed EPS are never left out"},
    {Section::Namespaces, "OmitPlacedPDF", Answer::NotPossible, "false", "placed PDFs are never left out"},
    {Section::Namespaces, "SimulateOverprint", Answer::NotPossible, "false", "overprinting is not shown"},
    {Section::Namespaces, "CropImagesToFrames", Answer::NotPossible, "false",
     "the parts of images outside their frames stay inside the PDF"},
    {Section::Namespaces, "FlattenerPreset", Answer::NotPossible, nullptr,
     "transparency is never flattened: it stays, or the export is refused"},
    {Section::Namespaces, "FlattenerIgnoreSpreadOverrides", Answer::NotPossible, "false",
     "transparency is never flattened"},
    {Section::Namespaces, "DestinationProfileName", Answer::Approximated, "()",
     "colours become CMYK by the document's own profiles; the output profile of a PDF/X is honoured"},
    {Section::Namespaces, "DestinationProfileSelector", Answer::Approximated, "/NA|/DocumentCMYK",
     "the document's own profiles"},
    {Section::Namespaces, "PDFXOutputIntentProfileSelector", Answer::Approximated,
     "/NA|/DocumentCMYK|/UseName", "the profile that is named, or the document's own"},
    {Section::Namespaces, "UntaggedCMYKHandling", Answer::Approximated, "/LeaveUntagged",
     "CMYK gets the document's profile where it manages colours"},
    {Section::Namespaces, "UntaggedRGBHandling", Answer::Approximated, "/LeaveUntagged|/UseDocumentProfile",
     "RGB gets the document's profile where it manages colours"},
    {Section::Namespaces, "Downsample16BitImages", Answer::Approximated, "true", "samples have 8 bits"},
    {Section::Namespaces, "GenerateStructure", Answer::NotPossible, "false", "the PDF has no structure tags"},
    {Section::Namespaces, "IncludeHyperlinks", Answer::NotPossible, nullptr,
     "links are there where the document has link annotations"},
    {Section::Namespaces, "IncludeInteractive", Answer::NotPossible, "false",
     "fields and annotations are there where the document has them"},
    {Section::Namespaces, "FormElements", Answer::NotPossible, "false",
     "fields are there where the document has them"},
    {Section::Namespaces, "MultimediaHandling", Answer::NotPossible, "/UseObjectSettings",
     "Scribus places no sound and no film"},
    {Section::Namespaces, "PreserveEditing", Answer::NotPossible, "false",
     "the PDF can't be edited as a document"},
    {Section::Namespaces, "PageMarksFile", Answer::NotPossible, "()|/RomanDefault",
     "the marks are Scribus's"},
};

// For PostScript programs and for the programs that read job options.
const char* const cForPostScript[] = {"AllowPSXObjects",
                                      "AutoPositionEPSFiles",
                                      "DSCReportingLevel",
                                      "EmitDSCWarnings",
                                      "ImageMemory",
                                      "LockDistillerParams",
                                      "ParseDSCComments",
                                      "ParseDSCCommentsForDocInfo",
                                      "ParseICCProfilesInComments",
                                      "PreserveCopyPage",
                                      "PreserveDICMYKValues",
                                      "PreserveEPSInfo",
                                      "PreserveFlatness",
                                      "PreserveHalftoneInfo",
                                      "PreserveOPIComments",
                                      "TransferFunctionInfo",
                                      "UCRandBGInfo",
                                      "UsePrologue"};
const char* const cForOthers[] = {"CoreDistVersion", "Description", "Namespace", "OtherNamespaces"};
const char* const cForOtherCoding[] = {"JPEG2000ColorACSImageDict", "JPEG2000ColorImageDict",
                                       "JPEG2000GrayACSImageDict", "JPEG2000GrayImageDict", "MonoImageDict"};
}  // namespace

std::vector<JobOptionRow> JobOptionRow::MakeOthers()
{
    std::vector<JobOptionRow> rows(std::begin(cOthers), std::end(cOthers));
    const auto add = [&](Section place, const char* name, const char* reason) {
        rows.push_back({place, name, Answer::NoMeaning, nullptr, reason});
    };
    for (const char* name : cForPostScript)
        add(Section::Parameters, name, "of PostScript programs");
    for (const char* name : cForOthers)
        add(Section::Parameters, name, "of the file of job options itself");
    for (const char* name : cForOtherCoding)
        add(Section::Parameters, name, "of a coding that no image gets");
    add(Section::Device, "PageSize", "pages have the document's sizes");
    add(Section::Namespaces, "ErrorControl", "what goes wrong is always told");
    return rows;
}
