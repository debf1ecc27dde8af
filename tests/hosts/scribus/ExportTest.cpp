#include "EngineFixture.h"
#include "tests/support/TestFiles.h"
#include "tests/support/Texts.h"

#include <QFile>
#include <QProcess>
#include <QRectF>

namespace
{
class ExportTest : public EngineFixture
{
};

TEST_F(ExportTest, PagesComeInTheOrderOfTheRange)
{
    Open(MakeDocument("a & 'b' \"c\" $(d) \u00e9.sla"_q, 3));
    const QString all = GetOutput("all.pdf"_q);
    const QString some = GetOutput("some #%20.pdf"_q);
    ASSERT_EQ(Export(all), cSuccess) << mHost->GetLastFailure().toStdString();
    ASSERT_EQ(Export(some, "/CompatibilityLevel 1.3", "3,1-2,3"_q), cSuccess);
    EXPECT_EQ(PdfFacts::Read(all).pageCount, 3);
    EXPECT_EQ(PdfFacts::Read(some).pageCount, 4);
    EXPECT_EQ(PdfFacts::Read(some).version, "1.3"_q);
    EXPECT_EQ(Export(all, "", "3-4"_q), cFailure);
    EXPECT_EQ(ListOutput(), "all.pdf|some #%20.pdf"_list);
}
}  // namespace
