#pragma once

#include "foundation/core/GResult.h"

#include <QHash>
#include <QString>
#include <QStringList>

class QDomNode;
class QXmlStreamWriter;

namespace Morvane
{
// Replaces an XML file by a DOM node and keeps the order of attributes that the file has. Elements are
// matched by address: the names of the elements above and the number among the siblings with the same name.
class XmlNodeWriter
{
public:
    // Reads the order from the file. A missing file gives no order, and a file gives none from the point
    // where it is no longer valid XML. Attributes without an order are sorted by name.
    explicit XmlNodeWriter(const QString& path);

    // Replaces the file whole. Fails, and leaves the old file as it was, when the new file can't be written,
    // or when the old file could not be read, because its order would be lost. A null node is refused.
    GResult write(const QDomNode& node) const;

private:
    void readOrder();
    void writeNode(const QDomNode& node, const QString& address, QXmlStreamWriter* writer) const;
    void writeChildren(const QDomNode& node, const QString& address, QXmlStreamWriter* writer) const;
    void writeAttributes(const QDomNode& node, const QString& address, QXmlStreamWriter* writer) const;

    QString mPath;
    GResult mRead = GResult::Success();
    QHash<QString, QStringList> mOrder;  // attribute names by the element's address
};
}  // namespace Morvane
