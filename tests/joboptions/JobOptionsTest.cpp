#include "joboptions/JobOptions.h"
#include "tests/support/Test.h"

// Puts a value back into one form, in which strings and names can be told apart.
static QString Describe(const PostScriptValue& value)
{
    QStringList items;
    for (const PostScriptValue& item : value.GetItems())
        items.append(Describe(item));
    switch (value.GetType()) {
        case PostScriptValue::Type::Null:
            return "null"_q;
        case PostScriptValue::Type::Boolean:
            return value.GetBoolean() ? "true"_q : "false"_q;
        case PostScriptValue::Type::Number:
            return QString::number(value.GetNumber());
        case PostScriptValue::Type::Name:
            return "/"_q + value.GetText();
        case PostScriptValue::Type::String:
            return "("_q + value.GetText() + ")"_q;
        case PostScriptValue::Type::Array:
            return "["_q + items.join(QLatin1Char(' ')) + "]"_q;
        case PostScriptValue::Type::Dictionary:
            break;
    }
    return "<"_q + items.join(QLatin1Char(' ')) + ">"_q;
}

TEST(JobOptionsTest, EveryFormOfAValueIsRead)
{
    const std::pair<QByteArray, QString> cases[] = {
        {"12", "12"_q},
        {"-.5", "-0.5"_q},
        {"+1.25e2", "125"_q},
        {"16#fF", "255"_q},
        {"2#101", "5"_q},
        {"true", "true"_q},
        {"null", "null"_q},
        {"/PDFX1a:2001", "/PDFX1a:2001"_q},
        {"/", "/"_q},
        {"(a(b)c)", "(a(b)c)"_q},
        {R"((\(\)\\\n\101\7x\)y))", "(()\\\nA\ax)y)"_q},
        {"(a\\\r\nb\r\nc\rd)", "(ab\nc\nd)"_q},
        {"<48 65 6C6c 7>", "(Hellp)"_q},
        {"<FEFF00E4D83DDE00>", "(\u00e4\U0001F600)"_q},
        {"(\xFF\xFE"
         "a\\000)",
         "(a)"_q},
        {"(\xEF\xBB\xBF\xC3\xA4)", "(\u00e4)"_q},
        {"(\xE4)", "(\u00e4)"_q},
        {"<~87cURDZ~>", "(Hello)"_q},
        {"[1[2/a](b)]", "[1 [2 /a] (b)]"_q},
        {"{1 add}", "[1 /add]"_q},
        {"<</a 1/b<</c[]>>>>", "</a 1 /b </c []>>"_q},
        {"% comment\r 7 % another", "7"_q},
    };
    for (const auto& [text, value] : cases) {
        JobOptions options;
        const GResult parsed =
            options.Parse("\xEF\xBB\xBF%!PS\n<</X 0 /X " + text + "\n>>setdistillerparams");
        ASSERT_EQ(parsed.GetReason(), QString()) << text.constData();
        EXPECT_EQ(Describe(*options.FindParameter("X")).toStdString(), value.toStdString());
    }
}

TEST(JobOptionsTest, WhatIsNoJobOptionsFileIsRefusedWithItsPlace)
{
    const std::pair<QByteArray, const char*> cases[] = {
        {"", "at the end: no \"setdistillerparams\", so it names no settings"},
        {"<< /a 1 >> setpagedevice", "at the end: no \"setdistillerparams\", so it names no settings"},
        {"<< /a\r\n  (b\\) >> setdistillerparams", "line 2, column 3: a string without end"},
        {"<< /a [1 >> setdistillerparams", "line 1, column 10: an end of another kind than the beginning"},
        {"<< 1 2 >> setdistillerparams", "line 1, column 1: a dictionary with a key that is no name"},
        {"<< /a 1\n/b nan >> setdistillerparams", "line 2, column 4: \"nan\" is no value"},
        {"<< /a <0g> >> setdistillerparams", "line 1, column 9: a hexadecimal string with another character"},
        {"1 setdistillerparams", "line 1, column 3: \"setdistillerparams\" without a dictionary before it"},
        {"<< >> setdistillerparams\n(rm) run", "line 2, column 6: \"run\" is nothing that job options hold"},
        {"] ", "line 1, column 1: an end without its beginning"},
        {QByteArray(1000000, '['), "line 1, column 65: values nested too deeply"},
        {"PK\x03\x04", "line 1, column 1: \"PK\x03\x04\" is nothing that job options hold"},
    };
    for (const auto& [text, error] : cases) {
        JobOptions options;
        EXPECT_EQ(options.Parse(text).GetReason().toStdString(), error);
    }
}
TEST(JobOptionsTest, AFileLargerThanAnyJobOptionsIsRefused)
{
    Sandbox sandbox;
    const QString path = sandbox.GetPath("a.joboptions"_q);
    const QByteArray text = "<< /a 1 >> setdistillerparams";
    JobOptions options;
    WriteFile(path, text.leftJustified(int(JobOptions::cMostBytes)));
    EXPECT_EQ(options.Read(path).GetReason(), QString());
    WriteFile(path, text.leftJustified(int(JobOptions::cMostBytes) + 1));
    const GResult read = options.Read(path);
    EXPECT_TRUE(read.GetReason().endsWith("are not read"_q)) << read.GetReason().toStdString();
}
