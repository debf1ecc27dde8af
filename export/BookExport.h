#pragma once

#include "export/PDFStep.h"

class IBook;
class IBookContent;

// One PDF of the active book: each of its documents is looked at first, and the host then joins them.
class BookExport : public PDFStep
{
public:
    // Both outlive this object.
    BookExport(const GCPTSaveAsProperties& properties, const GPathName& workFolder);
    ~BookExport() override;

    bool Execute() override;

private:
    bool FindBook();
    bool CheckDocuments();
    bool CountMissingFonts(const IDFile& file);
    bool SaveBook();
    bool SetPreferences();
    bool RunExport();

    HostPtr<IBook> mBook;
    HostPtr<IBookContent> mContent;
    int mMissingFontCount = 0;
    GString mFontDetail;
};
