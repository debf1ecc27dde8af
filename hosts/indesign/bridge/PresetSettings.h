#pragma once

#include "foundation/core/GResult.h"

#include <QJsonArray>
#include <QJsonValue>
#include <QString>

class JobOptions;

// What a PDF export preset of the application is to be: properties by the names that its script interface
// gives them, in the order in which they are set. A later value of a property takes the place of an earlier
// one. Values are booleans, numbers, names of an enumeration's items, and texts; lengths are texts such as
// "9pt", which mean the same whatever the application's units are.
class PresetSettings
{
public:
    // Takes a job options file. Fails when it can't be read, has a value that breaks its rule, or asks for a
    // PDF that the application can't make; what was taken before stays then.
    GResult Read(const QString& path);

    // The same for what was read.
    GResult ReadFrom(const JobOptions& options);

    void Set(const char* property, const QJsonValue& value);
    void SetItem(const char* property, const char* item);
    void SetLength(const char* property, double points);

    // The application has three widths of the lines of marks: the nearest.
    void SetMarkWeight(double points);

    // Undefined for a property that was not set; for a text or item, empty.
    QJsonValue Get(const char* property) const;
    QString GetText(const char* property) const { return Get(property).toString(); }

    // The properties in their order: pairs of name and value.
    const QJsonArray& GetProperties() const { return mProperties; }

private:
    QJsonArray mProperties;
};
