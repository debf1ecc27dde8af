#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"

#include <gtest/gtest.h>

// A step catches by the base; code and text, any Unicode included, must come through every base.
TEST(GException, CodeAndTextSurviveEveryBase)
{
    const GString text = QStringLiteral("Gr\u00F6\u00DFe \u65E5\u672C");
    const auto raise = [&] { throw GCustomException(GErrorCode::cLockFile, text); };
    try {
        raise();
        FAIL();
    } catch (const GException& error) {
        EXPECT_EQ(error.GetCode(), 40092);
        EXPECT_EQ(error.GetDescription(), text);
    }
    try {
        raise();
        FAIL();
    } catch (const std::exception& error) {
        EXPECT_EQ(QString::fromUtf8(error.what()), text);
    }
    EXPECT_THROW(raise(), boost::exception);
}
