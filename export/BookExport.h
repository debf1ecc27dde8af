#pragma once

#include "export/PDFStep.h"

class IBook;
class IBookContent;

// Makes one PDF of the active book: first each of its documents is checked, then the host joins them.
class BookExport : public PDFStep
{
public:
    // Both must outlive this object.
    BookExport(const GCPTSaveAsProperties& properties, const GPathName& workFolder);
    ~BookExport() override;

    [[nodiscard]] bool Execute() override;

private:
    [[nodiscard]] bool FindBook();
    [[nodiscard]] bool CheckDocuments();
    [[nodiscard]] bool CountMissingFonts(const IDFile& file);
    [[nodiscard]] bool SaveBook();
    [[nodiscard]] bool SetPreferences();
    [[nodiscard]] bool RunExport();

    HostPtr<IBook> mBook;
    HostPtr<IBookContent> mContent;
    int mMissingFontCount = 0;
    GString mFontDetail;
};
