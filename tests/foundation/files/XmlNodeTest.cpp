#include "FileHandlerFixture.h"

#include <QDomDocument>

TEST_F(FileHandlerTest, SavedXmlKeepsTheOrderOfAttributes)
{
    const QByteArray original =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<table z=\"1\" a=\"2\" m=\"3\">\n"
        " <!-- kept -->\n <row q=\"1\" b=\"2\"/>\n <row c=\"&lt;&#xfc;&quot;\" y=\"4\" "
        "a=\"5\">text</row>\n</table>\n";
    const QString path = Make("table.xml", original);
    QDomDocument document;
    ASSERT_TRUE(document.setContent(original));
    EXPECT_TRUE(mHandler.saveXmlNodeKeepingAttributesOrder(document, path));
    EXPECT_EQ(ReadFile(path).trimmed().toStdString(),
              QByteArray(original).replace("&#xfc;", "\xC3\xBC").trimmed().toStdString());

    // What is new comes after what was there, by name; what is gone is gone.
    QDomElement row = document.documentElement().lastChildElement();
    row.setAttribute("n"_q, 1);
    row.setAttribute("d"_q, 2);
    row.removeAttribute("y"_q);
    EXPECT_TRUE(mHandler.saveXmlNodeKeepingAttributesOrder(document, path));
    EXPECT_TRUE(ReadFile(path).contains("\" a=\"5\" d=\"2\" n=\"1\">text</row>"))
        << ReadFile(path).toStdString();
}
