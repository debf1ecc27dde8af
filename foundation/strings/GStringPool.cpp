#include "foundation/strings/GStringPool.h"

#include "foundation/strings/GStringPoolSupport.h"

#include <limits>

const GString GStringPool::cEnglish = QStringLiteral("enUS");
const GString GStringPool::cNeutral = QStringLiteral("Neutral");

GDict<GString, std::unique_ptr<GStringPoolTable>> GStringPool::sStringPoolTables;
QStringList GStringPool::sLanguages;
QStringList GStringPool::sLanguagesRead;
GString GStringPool::sCurrentLanguage;
GStringPoolTable* GStringPool::sCurrentLanguageTable = nullptr;
GStringPoolTable* GStringPool::sEnglishTable = nullptr;
GStringPoolTable* GStringPool::sNeutralTable = nullptr;

static const GString cUnknown;

void GStringPool::Initialize()
{
    if (sEnglishTable != nullptr)
        return;
    sCurrentLanguage = cEnglish;
    sEnglishTable = &GetTable(cEnglish);
    sCurrentLanguageTable = sEnglishTable;
    sNeutralTable = &GetTable(cNeutral);
}

void GStringPool::Finalize()
{
    sCurrentLanguageTable = sEnglishTable = sNeutralTable = nullptr;
    sStringPoolTables.Clear();
    sLanguages.clear();
    sCurrentLanguage.clear();
    GStringPoolSupport::ForgetStringFiles();
}

static const GString* FindIn(const GStringPoolTable* table, uint32_t code)
{
    return table == nullptr ? nullptr : table->FindStringForID(code);
}

const GString* GStringPool::FindString(uint32_t code)
{
    if (const GString* text = FindIn(sNeutralTable, code))
        return text;
    if (const GString* text = FindIn(sCurrentLanguageTable, code))
        return text;
    return FindIn(sEnglishTable, code);
}

const GString& GStringPool::GetString(uint32_t code)
{
    const GString* text = FindString(code);
    return text == nullptr ? cUnknown : *text;
}

bool GStringPool::GetString(uint32_t code, GString& text)
{
    const GString* found = FindString(code);
    text = found == nullptr ? GString() : *found;
    return found != nullptr;
}

bool GStringPool::GetString(const GString& language, uint32_t code, GString& text)
{
    const GStringPoolTable* table = FindTableForReading(language);
    const GString* found = table == nullptr ? nullptr : table->FindStringForID(code);
    text = found == nullptr ? GString() : *found;
    return found != nullptr;
}

void GStringPool::GetStringList(uint32_t code, QStringList& texts)
{
    texts.clear();
    for (const GString* text = FindString(code); text != nullptr; text = FindString(++code)) {
        texts.append(*text);
        if (code == std::numeric_limits<uint32_t>::max())
            return;
    }
}

GStringPoolTable& GStringPool::GetTable(const GString& language)
{
    std::unique_ptr<GStringPoolTable>& table = sStringPoolTables.FindOrInsert(language);
    if (table == nullptr) {
        table = std::make_unique<GStringPoolTable>();
        if (language != cNeutral)
            sLanguages.append(language);
    }
    return *table;
}

GStringPoolTable* GStringPool::FindTable(const GString& language)
{
    const std::unique_ptr<GStringPoolTable>* table = sStringPoolTables.Find(language);
    return table == nullptr ? nullptr : table->get();
}

GStringPoolTable* GStringPool::FindTableForReading(const GString& language)
{
    if (!sLanguagesRead.contains(language)) {
        sLanguagesRead.append(language);
        GStringPoolSupport::ReadDefaultStringFile(language);
    }
    return FindTable(language);
}

void GStringPool::GetLanguage(GString& name)
{
    name = sCurrentLanguage;
}

bool GStringPool::SetLanguage(const GString& name)
{
    FindTableForReading(cNeutral);
    FindTableForReading(cEnglish);
    GStringPoolTable* table = FindTableForReading(name);
    sCurrentLanguage = table == nullptr ? cEnglish : name;
    sCurrentLanguageTable = table == nullptr ? sEnglishTable : table;
    return table != nullptr;
}

void GStringPool::GetAvailableLanguages(QStringList& languages)
{
    languages = sLanguages;
}

int GStringPool::GetNumAvailableLanguages()
{
    return sLanguages.size();
}

bool GStringPool::DeleteLanguage(const GString& name)
{
    if (name == cEnglish || name == cNeutral || FindTable(name) == nullptr)
        return false;
    if (sCurrentLanguage == name) {
        sCurrentLanguage = cEnglish;
        sCurrentLanguageTable = sEnglishTable;
    }
    sLanguages.removeAll(name);
    if (!sLanguagesRead.contains(name))
        sLanguagesRead.append(name);
    sStringPoolTables.Remove(name);
    return true;
}

GStringPool::TempLanguageForcer::TempLanguageForcer(const GString& language)
{
    GetLanguage(mRemembered);
    static_cast<void>(SetLanguage(language));  // English where it has no texts
}

GStringPool::TempLanguageForcer::~TempLanguageForcer()
{
    static_cast<void>(SetLanguage(mRemembered));  // English where it has gone
}

bool GStringPool::TempLanguageForcer::WasForced() const
{
    return sCurrentLanguage != mRemembered;
}
