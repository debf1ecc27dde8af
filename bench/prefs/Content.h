#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <vector>

// The settings that every store of the benchmark holds.
namespace Content
{
constexpr int cGroups = 200;
constexpr int cEntries = 500;

// One setting, its names in the forms in which the stores take them.
struct Place
{
    QByteArray group;
    QByteArray key;
    QString path;  // group/key
    QString value;
};

// What settings hold: booleans, numbers, names, paths, and now and then a list.
Place MakePlace(int group, int entry);

void ForEach(int groups, int entries, const std::function<void(const Place& place)>& operation);

// Some thousand places of the content in no order, each with text of its own.
const std::vector<Place>& GetSample();
}  // namespace Content
