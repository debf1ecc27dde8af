#include "joboptions/JobOptions.h"
#include "joboptions/JobOptionsRules.h"
#include "tests/support/Test.h"

TEST(JobOptionsRulesTest, AValueThatCannotBeIsNamedWithWhatItsSettingTakes)
{
    // fault: empty: it is fine
    const std::pair<QByteArray, const char*> cases[] = {
        {"", ""},
        {"/Unknown (x) /CompatibilityLevel null", ""},
        {"/CompatibilityLevel 1.4", ""},
        {"/CompatibilityLevel 2", ""},
        {"/CompatibilityLevel 2.1", "\"CompatibilityLevel\" takes a number from 1 to 2"},
        {"/CompatibilityLevel (1.4)", "\"CompatibilityLevel\" takes a number from 1 to 2"},
        {"/ColorImageResolution 8", "\"ColorImageResolution\" takes a number from 9 to 2400"},
        {"/PDFX3Check /true", "\"PDFX3Check\" takes true or false"},
        {"/Binding (Left)", "\"Binding\" takes a name, as /Left is"},
        {"/PDFXOutputIntentProfile /None", "\"PDFXOutputIntentProfile\" takes a text in parentheses"},
        {"/CheckCompliance /PDFX4", "\"CheckCompliance\" takes an array"},
        {"/CheckCompliance [/PDFX4]", ""},
        {"/ColorImageDict <</QFactor 0.15>>", ""},
        {"/ColorImageDict <<>>", ""},
        {"/ColorImageDict <</QFactor 101>>",
         "\"ColorImageDict\" takes a dictionary, with a \"QFactor\" from 0 to 100"},
        {"/OtherNamespaces [<</MarksOffset 6>> <</BleedOffset [1 2 3 4]>>]", ""},
        {"/OtherNamespaces [<</MarksOffset 6>> <</MarksOffset -1>>]",
         "\"MarksOffset\" takes a number from 0 to 14400"},
        {"/OtherNamespaces [<</BleedOffset [1 2 3]>>]",
         "\"BleedOffset\" takes an array of 4 numbers from 0 to 14400"},
        {"/OtherNamespaces [<</BleedOffset [1 2 3 /x]>>]",
         "\"BleedOffset\" takes an array of 4 numbers from 0 to 14400"},
        {">>setpagedevice<</HWResolution [2400 2400]", ""},
        {">>setpagedevice<</HWResolution [2400 2400]>>setpagedevice<</HWResolution [0 0]",
         "\"HWResolution\" takes an array of 2 numbers above 0"},
    };
    for (const auto& [settings, fault] : cases) {
        JobOptions options;
        const QByteArray last = settings.contains("setpagedevice") ? "setpagedevice" : "setdistillerparams";
        const QByteArray text = "<</A 1>>setdistillerparams <<" + settings + ">>" + last;
        ASSERT_EQ(options.Parse(text).GetReason(), QString()) << text.constData();
        EXPECT_EQ(JobOptionsRules::FindFault(options).toStdString(), fault) << settings.constData();
    }
}
