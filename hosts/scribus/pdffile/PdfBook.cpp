#include "hosts/scribus/pdffile/PdfBook.h"

#include "hosts/scribus/pdffile/PdfTry.h"

#include <QCryptographicHash>
#include <QFile>

#include <qpdf/ClosedFileInputSource.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>

namespace
{
QPDFObjectHandle MakeText(const QString& text)
{
    return QPDFObjectHandle::newUnicodeString(text.toStdString());
}

// What the output intents say, so that two of them can be compared.
std::string DescribeIntents(QPDF& pdf)
{
    QPDFObjectHandle intents = pdf.getRoot().getKey("/OutputIntents");
    std::string text;
    for (int i = 0; intents.isArray() && i < intents.getArrayNItems(); ++i) {
        QPDFObjectHandle intent = intents.getArrayItem(i);
        for (const char* key : {"/S", "/OutputCondition", "/OutputConditionIdentifier", "/RegistryName"})
            text += intent.getKey(key).unparse() + '\n';
        QPDFObjectHandle profile = intent.getKey("/DestOutputProfile");
        if (!profile.isStream())
            continue;
        const auto buffer = profile.getStreamData();
        const QByteArray bytes(reinterpret_cast<const char*>(buffer->getBuffer()),
                               static_cast<int>(buffer->getSize()));
        text += QCryptographicHash::hash(bytes, QCryptographicHash::Sha256).toHex().toStdString() + '\n';
    }
    return text;
}

std::unique_ptr<QPDF> Open(const QString& path)
{
    auto pdf = std::make_unique<QPDF>();
    pdf->setSuppressWarnings(true);
    pdf->setAttemptRecovery(false);
    // A book may have more documents than a process may have open files.
    pdf->processInputSource(std::make_shared<ClosedFileInputSource>(QFile::encodeName(path).constData()));
    return pdf;
}
}  // namespace

GResult PdfBook::Add(const PdfBookPart& part)
{
    const auto add = [&] { AddPart(part); };
    return PdfTry(add);
}

void PdfBook::AddPart(const PdfBookPart& part)
{
    std::unique_ptr<QPDF> pdf = Open(part.path);
    const std::string intents = DescribeIntents(*pdf);
    if (mParts.empty())
        mIntents = intents;
    else if (intents != mIntents)
        throw std::runtime_error("its output intent is not that of the first document");
    QPDF& whole = mParts.empty() ? *pdf : *mParts.front();
    const int firstPage =
        mParts.empty() ? 0 : static_cast<int>(QPDFPageDocumentHelper(whole).getAllPages().size());
    if (!mParts.empty())
        AddPages(*pdf);
    QPDF& kept = *pdf;
    mParts.push_back(std::move(pdf));
    AddBookmark(kept, part, firstPage);
    AddLabels(part, firstPage);
}

void PdfBook::AddPages(QPDF& pdf)
{
    QPDFPageDocumentHelper whole(*mParts.front());
    for (const QPDFPageObjectHelper& page : QPDFPageDocumentHelper(pdf).getAllPages())
        whole.addPage(page, false);
}

// The document's own bookmarks come along once its pages are there: they lead to them.
void PdfBook::AddBookmark(QPDF& pdf, const PdfBookPart& part, int firstPage)
{
    QPDF& whole = *mParts.front();
    const std::vector<QPDFPageObjectHelper> pages = QPDFPageDocumentHelper(whole).getAllPages();
    QPDFObjectHandle target = QPDFObjectHandle::newArray();
    target.appendItem(pages.at(static_cast<size_t>(firstPage)).getObjectHandle());
    target.appendItem(QPDFObjectHandle::newName("/Fit"));
    QPDFObjectHandle bookmark = whole.makeIndirectObject(QPDFObjectHandle::newDictionary());
    bookmark.replaceKey("/Title", MakeText(part.name));
    bookmark.replaceKey("/Dest", target);
    mBookmarks.push_back(bookmark);

    QPDFObjectHandle own = pdf.getRoot().getKey("/Outlines");
    if (!own.isDictionary() || !own.isIndirect() || !own.hasKey("/First"))
        return;
    if (&pdf != &whole)
        own = whole.copyForeignObject(own);
    int count = 0;
    for (QPDFObjectHandle child = own.getKey("/First"); child.isDictionary(); child = child.getKey("/Next")) {
        child.replaceKey("/Parent", bookmark);
        ++count;
    }
    bookmark.replaceKey("/First", own.getKey("/First"));
    bookmark.replaceKey("/Last", own.getKey("/Last"));
    bookmark.replaceKey("/Count", QPDFObjectHandle::newInteger(-count));  // closed
}

// Whole numbers that follow each other are one range; any other number stands as a text.
void PdfBook::AddLabels(const PdfBookPart& part, int firstPage)
{
    int expected = -1;
    for (int i = 0; i < part.pageNumbers.size(); ++i) {
        const QString& number = part.pageNumbers[i];
        const int value = number.toInt();
        const bool isWhole = value > 0 && QString::number(value) == number;
        const bool goesOn = isWhole && value == expected;
        expected = isWhole ? value + 1 : -1;
        if (goesOn)
            continue;
        QPDFObjectHandle label = QPDFObjectHandle::newDictionary();
        if (isWhole) {
            label.replaceKey("/S", QPDFObjectHandle::newName("/D"));
            label.replaceKey("/St", QPDFObjectHandle::newInteger(value));
        } else {
            label.replaceKey("/P", MakeText(number));
        }
        mLabels.push_back(QPDFObjectHandle::newInteger(firstPage + i));
        mLabels.push_back(label);
    }
}

void PdfBook::FinishBookmarks()
{
    QPDF& whole = *mParts.front();
    QPDFObjectHandle outlines = whole.makeIndirectObject(QPDFObjectHandle::newDictionary());
    for (size_t i = 0; i < mBookmarks.size(); ++i) {
        mBookmarks[i].replaceKey("/Parent", outlines);
        if (i > 0)
            mBookmarks[i].replaceKey("/Prev", mBookmarks[i - 1]);
        if (i + 1 < mBookmarks.size())
            mBookmarks[i].replaceKey("/Next", mBookmarks[i + 1]);
    }
    outlines.replaceKey("/Type", QPDFObjectHandle::newName("/Outlines"));
    outlines.replaceKey("/First", mBookmarks.front());
    outlines.replaceKey("/Last", mBookmarks.back());
    outlines.replaceKey("/Count", QPDFObjectHandle::newInteger(static_cast<long long>(mBookmarks.size())));
    whole.getRoot().replaceKey("/Outlines", outlines);
}

// In both places where a PDF may have it.
void PdfBook::SetTitle()
{
    QPDF& whole = *mParts.front();
    QPDFObjectHandle information = whole.getTrailer().getKey("/Info");
    if (!information.isDictionary()) {
        information = whole.makeIndirectObject(QPDFObjectHandle::newDictionary());
        whole.getTrailer().replaceKey("/Info", information);
    }
    information.replaceKey("/Title", MakeText(mTitle));
    QPDFObjectHandle metadata = whole.getRoot().getKey("/Metadata");
    if (!metadata.isStream())
        return;
    const auto buffer = metadata.getStreamData();
    std::string text(reinterpret_cast<const char*>(buffer->getBuffer()), buffer->getSize());
    const size_t title = text.find("<dc:title>");
    const size_t item = title == std::string::npos ? title : text.find("<rdf:li", title);
    const size_t begin = item == std::string::npos ? item : text.find('>', item);
    const size_t end = begin == std::string::npos ? begin : text.find('<', begin);
    if (end == std::string::npos)
        return;
    text.replace(begin + 1, end - begin - 1, mTitle.toHtmlEscaped().toStdString());
    metadata.replaceStreamData(text, QPDFObjectHandle::newNull(), QPDFObjectHandle::newNull());
}

GResult PdfBook::Write(const QString& path, const PdfWishes& wishes)
{
    const auto write = [&] {
        FinishBookmarks();
        QPDFObjectHandle tree = QPDFObjectHandle::newDictionary();
        tree.replaceKey("/Nums", QPDFObjectHandle::newArray(mLabels));
        mParts.front()->getRoot().replaceKey("/PageLabels", tree);
        SetTitle();
        PdfFile::WriteTo(*mParts.front(), path, wishes);
    };
    return PdfTry(write);
}
