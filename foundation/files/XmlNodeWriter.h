#pragma once

#include "foundation/core/GResult.h"

#include <QHash>
#include <QString>
#include <QStringList>

class QDomNode;
class QXmlStreamWriter;

namespace Morvane
{
// Writes a DOM node over an XML file and keeps the order of attributes that the file has. An element is known
// again by its address: the names of the elements above it and its number among its siblings of the same
// name.
class XmlNodeWriter
{
public:
    // Reads the order from the file. A file that is missing or no XML (from where it stops being so) gives
    // none, and attributes then stand in the order of their names.
    explicit XmlNodeWriter(const QString& path);

    // Replaces the file whole. Fails, with the old file as it was, when it can't be written, and when there
    // is one that could not be read: its order would be lost. A null node is refused.
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
