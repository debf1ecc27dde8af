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
