#pragma once

#include "foundation/core/GString.h"
#include "foundation/strings/GStringPoolTable.h"

#include <QStringList>

#include <memory>

// The process-wide store of the texts that a user sees, by code and language.
//
// A code is looked up in the neutral table, then in the current language's, then in the English one: a text
// that is missing in a translation is shown in English, and a text that does not depend on the language is
// the same in all of them. Texts come from static tables and from string files (GStringPoolSupport). The
// string files of a language are looked for once, when its table is first asked for.
//
// Everything is for the host's main thread. Nothing raises for a missing text. A reference to a text is valid
// until texts are added or a language is deleted.
class GStringPool
{
public:
    static const GString cEnglish;  // "enUS"
    static const GString cNeutral;  // "Neutral"

    // Sets the pool up with an English and a neutral table, and English as the current language. Does nothing
    // when the pool is set up already.
    static void Initialize();

    // Empties the pool: every text, language and parameter of string files is gone.
    static void Finalize();

    // The text of a code; empty when it is unknown.
    static const GString& GetString(uint32_t code);

    // Whether the code is known; `text` becomes its text, or empty.
    [[nodiscard]] static bool GetString(uint32_t code, GString& text);

    // The same from the table of one language only.
    [[nodiscard]] static bool GetString(const GString& language, uint32_t code, GString& text);

    // The texts of code, code + 1, code + 2 and so on, as long as each is known.
    static void GetStringList(uint32_t code, QStringList& texts);

    // The table of a language, created when it is missing.
    static GStringPoolTable& GetTable(const GString& language);

    static void GetLanguage(GString& name);

    // Makes a language the current one. First it looks for the string files of that language and of the
    // English and the neutral table. Gives whether the language has a table; without one the current language
    // becomes "enUS".
    [[nodiscard]] static bool SetLanguage(const GString& name);

    // Whether a language has a table, after looking for its string files.
    static bool HasLanguage(const GString& name) { return FindTableForReading(name) != nullptr; }

    // The known languages, in the order in which they were added; the neutral table is not a language.
    static void GetAvailableLanguages(QStringList& languages);
    static int GetNumAvailableLanguages();

    // Forgets a language's texts; its string files are not read again until other parameters for them are
    // given. If it was the current language, "enUS" becomes the current one. False for a language that is not
    // known, and for "enUS" and "Neutral", which stay.
    [[nodiscard]] static bool DeleteLanguage(const GString& name);

    // Uses another language for a scope. At the end restores the old language, or "enUS" if that is gone.
    class TempLanguageForcer
    {
    public:
        explicit TempLanguageForcer(const GString& language);
        ~TempLanguageForcer();
        TempLanguageForcer(const TempLanguageForcer&) = delete;
        TempLanguageForcer& operator=(const TempLanguageForcer&) = delete;

        // Whether the language in force differs from the one that will be restored.
        bool WasForced() const;

    private:
        GString mRemembered;
    };

private:
    friend class GStringPoolSupport;

    static const GString* FindString(uint32_t code);
    static GStringPoolTable* FindTable(const GString& language);
    static GStringPoolTable* FindTableForReading(const GString& language);

    static GDict<GString, std::unique_ptr<GStringPoolTable>> sStringPoolTables;
    static QStringList sLanguages;
    static QStringList sLanguagesRead;
    static GString sCurrentLanguage;
    static GStringPoolTable* sCurrentLanguageTable;  // these three are null until Initialize
    static GStringPoolTable* sEnglishTable;
    static GStringPoolTable* sNeutralTable;
};
