#include "hosts/scribus/pdffile/PdfSamples.h"
#include "tests/support/Test.h"

static std::string ToBytes(const char* hexadecimal)
{
    return QByteArray::fromHex(hexadecimal).toStdString();
}

TEST(PdfSamplesTest, FewerDotsAreTheMeanOfThoseThatTheyCoverOrTheOneInTheMiddle)
{
    const struct
    {
        PdfSamples samples;
        int width, height;
        bool averages;
        const char* bytes;
    } cases[] = {
        {{4, 2, 1, 8, ToBytes("00 10 20 30 10 20 30 40")}, 2, 1, true, "10 30"},
        {{4, 2, 1, 8, ToBytes("00 10 20 30 10 20 30 40")}, 2, 1, false, "20 40"},
        {{5, 1, 1, 8, ToBytes("00 10 20 30 40")}, 2, 1, true, "08 30"},
        {{2, 1, 3, 8, ToBytes("00 80 FF 02 80 FD")}, 1, 1, true, "01 80 FE"},
        {{1, 2, 4, 8, ToBytes("00 00 00 FF 01 00 02 FF")}, 1, 1, true, "01 00 01 FF"},
        {{2, 1, 1, 8, ToBytes("01 02")}, 9, 9, true, "01 02"},
        {{2, 2, 1, 8, ToBytes("01 02 03 04")}, 0, 0, false, "04"},
        // Rows of one bit begin on bytes.
        {{9, 2, 1, 1, ToBytes("FF 80 00 00")}, 3, 2, false, "E0 00"},
        {{16, 1, 1, 1, ToBytes("F0 C0")}, 4, 1, true, "A0"},
    };
    for (const auto& item : cases) {
        const PdfSamples small = item.samples.Shrink(item.width, item.height, item.averages);
        EXPECT_EQ(QByteArray::fromStdString(small.bytes).toHex(), QByteArray::fromHex(item.bytes).toHex());
        EXPECT_EQ(small.bytes.size(), small.GetLength());
    }
}

TEST(PdfSamplesTest, ColoursAreGraysWhereTheirPartsAreEqualOrBlackIsAlone)
{
    // grays: null where they are none
    const std::pair<PdfSamples, const char*> cases[] = {
        {{2, 1, 3, 8, ToBytes("000000 7F7F7F")}, "00 7F"},
        {{2, 1, 3, 8, ToBytes("000000 7F7F80")}, nullptr},
        {{2, 1, 3, 8, ToBytes("000000 7F807F")}, nullptr},
        {{2, 1, 4, 8, ToBytes("00000000 000000F0")}, "FF 0F"},
        {{2, 1, 4, 8, ToBytes("00000000 101010F0")}, nullptr},
        {{2, 1, 1, 8, ToBytes("00 10")}, nullptr},
        {{2, 1, 3, 8, ToBytes("000000")}, nullptr},
    };
    for (const auto& [samples, grays] : cases) {
        ASSERT_EQ(samples.AreGrays(), grays != nullptr);
        if (grays == nullptr)
            continue;
        EXPECT_EQ(samples.MakeGray().bytes, ToBytes(grays));
    }
}
