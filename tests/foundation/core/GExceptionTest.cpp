#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"

#include <gtest/gtest.h>

// A step catches by the base; code and text, any Unicode included, must come through every base.
TEST(GException, CodeAndTextSurviveEveryBase)
{
    const GString text = QStringLiteral("Gr\u00F6\u00DFe \u65E5\u672C");
    try {
        throw GCustomException(GErrorCode::cLockFile, text);
    } catch (const GException& error) {
        EXPECT_EQ(error.GetCode(), 40092);
        EXPECT_EQ(error.GetDescription(), text);
        EXPECT_EQ(QString::fromUtf8(static_cast<const std::exception&>(error).what()), text);
        EXPECT_NE(dynamic_cast<const boost::exception*>(&error), nullptr);
    }
}
