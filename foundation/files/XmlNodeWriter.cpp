#include "foundation/files/XmlNodeWriter.h"

#include "foundation/core/SharedFile.h"
#include "foundation/system/GDurableFile.h"

#include <QDomDocument>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <vector>

namespace Morvane
{
namespace
{
// Gives each element its address, called in document order on the way down.
class AddressCounter
{
public:
    QString getAddress(const QString& parent, const QString& name)
    {
        const int number = mNumbers[name]++;
        return parent + QLatin1Char('/') + name + QLatin1Char('[') + QString::number(number) +
               QLatin1Char(']');
    }

private:
    QHash<QString, int> mNumbers;
};

struct OpenElement
{
    QString address;
    AddressCounter children;
};
}  // namespace

XmlNodeWriter::XmlNodeWriter(const QString& path) : mPath(path)
{
    readOrder();
}

void XmlNodeWriter::readOrder()
{
    QByteArray text;
    if (IsFileMissing(mPath))
        return;
    mRead = ReadSharedFile(mPath, cLargestTextFile, &text);
    QXmlStreamReader reader(text);
    reader.setNamespaceProcessing(false);
    std::vector<OpenElement> open(1);
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::StartElement) {
            OpenElement& parent = open.back();
            OpenElement element;
            element.address = parent.children.getAddress(parent.address, reader.qualifiedName().toString());
            for (const QXmlStreamAttribute& attribute : reader.attributes())
                mOrder[element.address].append(attribute.qualifiedName().toString());
            open.push_back(element);
        } else if (token == QXmlStreamReader::EndElement) {
            open.pop_back();
        }
    }
}

GResult XmlNodeWriter::write(const QDomNode& node) const
{
    if (node.isNull())
        return GResult::Failure(QStringLiteral("There is nothing to write."));
    QByteArray text;
    QXmlStreamWriter writer(&text);
    writer.setAutoFormatting(true);
    writer.setAutoFormattingIndent(1);
    writer.writeStartDocument();
    if (node.isDocument())
        writeChildren(node, QString(), &writer);
    else
        writeNode(node, AddressCounter().getAddress(QString(), node.nodeName()), &writer);
    writer.writeEndDocument();
    return mRead.Then([&] { return GDurableFile::Replace(mPath, text); });
}

void XmlNodeWriter::writeNode(const QDomNode& node, const QString& address, QXmlStreamWriter* writer) const
{
    switch (node.nodeType()) {
        case QDomNode::ElementNode:
            writer->writeStartElement(node.nodeName());
            writeAttributes(node, address, writer);
            writeChildren(node, address, writer);
            writer->writeEndElement();
            break;
        case QDomNode::TextNode:
            writer->writeCharacters(node.nodeValue());
            break;
        case QDomNode::CDATASectionNode:
            writer->writeCDATA(node.nodeValue());
            break;
        case QDomNode::CommentNode:
            writer->writeComment(node.nodeValue());
            break;
        case QDomNode::ProcessingInstructionNode:
            // The XML declaration is a processing instruction to the DOM; ours is written already.
            if (node.nodeName() != QLatin1String("xml"))
                writer->writeProcessingInstruction(node.nodeName(), node.nodeValue());
            break;
        default:
            break;
    }
}

void XmlNodeWriter::writeChildren(const QDomNode& node, const QString& address,
                                  QXmlStreamWriter* writer) const
{
    AddressCounter counter;
    for (QDomNode child = node.firstChild(); !child.isNull(); child = child.nextSibling()) {
        const QString childAddress =
            child.isElement() ? counter.getAddress(address, child.nodeName()) : QString();
        writeNode(child, childAddress, writer);
    }
}

void XmlNodeWriter::writeAttributes(const QDomNode& node, const QString& address,
                                    QXmlStreamWriter* writer) const
{
    const QDomNamedNodeMap attributes = node.attributes();
    QStringList names;
    for (int index = 0; index < attributes.count(); ++index)
        names.append(attributes.item(index).nodeName());
    const QStringList known = mOrder.value(address);
    const auto getPlace = [&known](const QString& name) {
        const int place = known.indexOf(name);
        return place < 0 ? known.size() : place;
    };
    std::sort(names.begin(), names.end(), [&](const QString& one, const QString& other) {
        return std::make_pair(getPlace(one), one) < std::make_pair(getPlace(other), other);
    });
    for (const QString& name : names)
        writer->writeAttribute(name, attributes.namedItem(name).nodeValue());
}
}  // namespace Morvane
