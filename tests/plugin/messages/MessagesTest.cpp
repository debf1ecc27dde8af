#include "foundation/strings/GStringPool.h"
#include "foundation/strings/GStringPoolSupport.h"
#include "foundation/strings/GStringPoolTable.h"
#include "foundation/trace/GTrace.h"
#include "plugin/messages/ErrorText.h"
#include "plugin/messages/MessageCodes.h"
#include "plugin/messages/MessageTable.h"
#include "tests/support/LogRecorder.h"
#include "tests/support/Test.h"

class Messages : public testing::Test
{
protected:
    Messages()
    {
        GStringPool::Initialize();
        RegisterPlugInMessages();
    }
    ~Messages() override { GStringPool::Finalize(); }

    static bool Speak(const QString& language)
    {
        const GPathName folder(QStringLiteral(HOPBOX_STRING_FILES));
        GStringPoolSupport::ReadStringFiles(folder, "CSP"_q, 0, 0, 0);
        return GStringPool::SetLanguage(language);
    }
};

// A code that a translation lacks, a parameter that it lost, or a line of the file that makes no sense.
TEST_F(Messages, EveryLanguageHasEveryTextWithItsParameters)
{
    const auto log = std::make_shared<LogRecorder>();
    GTrace::SetLogger(log);
    for (const char* language : {"deDE", "frFR"}) {
        const QString name = QString::fromLatin1(language);
        ASSERT_TRUE(Speak(name));
        int count = 0;
        for (const auto& entry : GStringPool::GetTable(GStringPool::cEnglish).GetAllStrings()) {
            ++count;
            GString text;
            ASSERT_TRUE(GStringPool::GetString(name, entry.key, text)) << language << " " << entry.key;
            EXPECT_NE(text, entry.value.text) << language << " " << entry.key;
            EXPECT_EQ(text.count("%1"_q), entry.value.text.count("%1"_q)) << language << " " << entry.key;
        }
        EXPECT_EQ(count, 25) << language;
    }
    EXPECT_EQ(log->TakeErrors(), QStringList());
    GTrace::SetLogger(nullptr);
}

TEST_F(Messages, TheFrameIsTranslatedWithItsText)
{
    ASSERT_TRUE(Speak("deDE"_q));
    EXPECT_EQ(ErrorText::Compose(PlugInMessage::cNoBook), "Plug-in-Fehler: Kein aktuelles Buch."_q);
}
