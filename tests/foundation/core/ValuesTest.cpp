#include "foundation/core/GDateTime.h"
#include "foundation/core/GUniqueID.h"
#include "foundation/core/GUnitSupport.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QRegularExpression>
#include <QSet>

#include <map>

TEST(GUniqueID, FreshOnesDifferAndHaveTextsOfOneForm)
{
    const QRegularExpression form(QStringLiteral("\\A[0-9A-F]{32}\\z"));
    QSet<GString> seen;
    for (int count = 0; count < 1000; ++count) {
        const GString text = GUniqueID::Create().GetHexText();
        ASSERT_TRUE(form.match(text).hasMatch()) << text.toStdString();
        seen.insert(text);
    }
    EXPECT_EQ(seen.size(), 1000);
}

TEST(GDateTime, TextHoldsTheMomentToTheMillisecond)
{
    const std::map<int64_t, const char*> cases = {
        {-1, "1969-12-31T23:59:59.999Z"},
        {1795250712345, "2026-11-21T08:45:12.345Z"},
        {951782400007, "2000-02-29T00:00:00.007Z"},
        {-62135596800000, "0001-01-01T00:00:00.000Z"},
        {253402300799999, "9999-12-31T23:59:59.999Z"},
    };
    for (const auto& testCase : cases) {
        const GDateTime moment = GDateTime::FromMilliseconds(testCase.first);
        EXPECT_EQ(moment.GetText(), QString::fromLatin1(testCase.second));
        EXPECT_EQ(GDateTime::FromText(moment.GetText()), moment);
    }
    const QDateTime elsewhere(QDate(2026, 11, 21), QTime(9, 45, 12, 345), Qt::OffsetFromUTC, 3600);
    EXPECT_EQ(GDateTime::FromQDateTime(elsewhere), GDateTime::FromMilliseconds(1795250712345));
}

// A hand-written or damaged value must not be taken for another moment.
TEST(GDateTime, AnyOtherTextIsNoMoment)
{
    for (const char* text :
         {"", "2026-11-21T08:45:12Z", "2026-11-21T08:45:12.345+", "2026-11-21 08:45:12.345Z",
          "2026-02-29T08:45:12.345Z", "2026-11-21T24:45:12.345Z", "0000-01-01T00:00:00.000Z",
          " 026-11-21T08:45:12.345Z"})
        EXPECT_FALSE(GDateTime::FromText(QString::fromLatin1(text)).IsValid()) << text;
    EXPECT_FALSE(GDateTime::FromMilliseconds(-62135596800001).IsValid());
    EXPECT_FALSE(GDateTime::FromMilliseconds(253402300800000).IsValid());
    EXPECT_FALSE(GDateTime::FromQDateTime(QDateTime()).IsValid());
    EXPECT_EQ(GDateTime().GetText(), GString());
}

TEST(GUnitSupport, LengthsByUnitCode)
{
    // length: of 720 points
    const std::tuple<int32_t, double, const char*, int32_t> cases[] = {
        {0, 720, "pt", 0}, {1, 60, "p", 1},   {2, 10, "in", 2},  {3, 25.4, "cm", 3},
        {4, 254, "mm", 4}, {5, 720, "pt", 0}, {-1, 720, "pt", 0}};
    for (const auto& [code, length, abbreviation, codeAsDefault] : cases) {
        EXPECT_DOUBLE_EQ(GUnitSupport::FromPoints(720, code), length) << code;
        EXPECT_DOUBLE_EQ(GUnitSupport::ToPoints(length, code), 720) << code;
        EXPECT_EQ(GUnitSupport::GetAbbreviation(code), QString::fromLatin1(abbreviation));
        GUnitSupport::SetDefaultUnitCode(code);
        EXPECT_EQ(GUnitSupport::GetDefaultUnitCode(), codeAsDefault);
    }
}
