#include "tests/support/fake_host/SmallPdf.h"

#include <vector>

static QByteArray MakePagesObject(int pageCount)
{
    QByteArray kids;
    for (int i = 0; i < pageCount; ++i)
        kids += QByteArray::number(3 + i) + " 0 R ";
    return "<< /Type /Pages /Count " + QByteArray::number(pageCount) + " /Kids [ " + kids + "] >>";
}

QByteArray MakeSmallPdf(int pageCount)
{
    std::vector<QByteArray> objects = {"<< /Type /Catalog /Pages 2 0 R >>", MakePagesObject(pageCount)};
    objects.resize(objects.size() + static_cast<size_t>(pageCount),
                   "<< /Type /Page /Parent 2 0 R /MediaBox [ 0 0 595 842 ] /Resources << >> >>");

    QByteArray pdf = "%PDF-1.4\n";
    QByteArray table = "0000000000 65535 f \n";
    for (size_t i = 0; i < objects.size(); ++i) {
        table += QByteArray::number(pdf.size()).rightJustified(10, '0') + " 00000 n \n";
        pdf += QByteArray::number(static_cast<int>(i) + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const QByteArray count = QByteArray::number(static_cast<int>(objects.size()) + 1);
    const QByteArray start = QByteArray::number(pdf.size());
    return pdf + "xref\n0 " + count + "\n" + table + "trailer\n<< /Size " + count +
           " /Root 1 0 R >>\nstartxref\n" + start + "\n%%EOF\n";
}
