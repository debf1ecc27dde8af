#include "hosts/scribus/sla/SlaFonts.h"
#include "tests/support/Test.h"

#include <algorithm>

static const QByteArray cStyles =
    "<CHARSTYLE CNAME='Plain' DefaultStyle='1' FONT='Default'/><CHARSTYLE CNAME='Strong' FONT='Bold'/>"
    "<CHARSTYLE CNAME='Stronger' CPARENT='Strong'/><CHARSTYLE CNAME='Round' CPARENT='Round'/>"
    "<STYLE NAME='Body' DefaultStyle='1'/><STYLE NAME='Head' FONT='Head'/><STYLE NAME='Sub' PARENT='Head'/>"
    "<STYLE NAME='List' Bullet='1' ParagraphEffectCharStyle='Stronger'/><STYLE NAME='Numbers' "
    "Numeration='1'/>"
    "<STYLE NAME='Loop' PARENT='Loop'/><STYLE NAME='Marked' CPARENT='Strong'/><STYLE NAME='X' FONT='Never'/>";

TEST(SlaFontsTest, ATextUsesTheFontThatItsStylesGiveIt)
{
    const std::pair<const char*, const char*> cases[] = {
        {"", ""},
        {"<para PARENT='Head'/><trail PARENT='Sub'/>", ""},
        {"<DefaultStyle/><ITEXT CH='a'/>", "Default"},
        {"<DefaultStyle FONT='Own'/><ITEXT CH='a'/><trail/>", "Own"},
        {"<DefaultStyle PARENT='Head'/><ITEXT CH='a'/><trail/>", "Head"},
        {"<ITEXT CH='a' FONT='One'/><ITEXT CH='b'/><para PARENT='Sub'/>", "Head One"},
        {"<ITEXT CH='a'/><para PARENT='Head' FONT='Over'/><ITEXT CH='b'/><trail PARENT='Marked'/>",
         "Bold Over"},
        {"<ITEXT CH='a' CPARENT='Stronger'/><var name='pgno'/><trail PARENT='Head'/>", "Bold Head"},
        {"<ITEXT CH='a' CPARENT='Round'/><trail PARENT='Loop'/>", "Default"},
        {"<ITEXT CH='a' FONT='One'/><trail PARENT='List'/>", "Bold One"},
        {"<ITEXT CH='a' FONT='One'/><trail PARENT='Numbers'/>", "Default One"},
        {"<PAGEOBJECT PTYPE='4' ANNOTATION='1' ANTYPE='3'/><DefaultStyle FONT='Field'/>", "Field"},
        {"<PAGEOBJECT PTYPE='4' ANNOTATION='1' ANTYPE='11'/><DefaultStyle FONT='Link'/>", ""},
        {"<DefaultStyle FONT='A'/><ITEXT CH='a'/><PAGEOBJECT PTYPE='4'/><ITEXT CH='b'/>", "A Default"},
        {"<Note Text=''/><ITEXT CH='a'/>", "Default"},
        {"<Note Text='packed'/>", "Bold Default Head Never"},
    };
    for (const auto& [words, used] : cases) {
        const QByteArray text =
            "<SCRIBUSUTF8NEW>" + cStyles + "<PAGEOBJECT PTYPE='4'/>" + words + "</SCRIBUSUTF8NEW>";
        QStringList fonts = SlaFonts::FindUsed(text).values();
        std::sort(fonts.begin(), fonts.end());
        EXPECT_EQ(fonts.join(QLatin1Char(' ')).toStdString(), used) << words;
    }
}
