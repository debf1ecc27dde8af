#include "PrefDocument.h"

#include "foundation/core/GMemoryInputStream.h"
#include "foundation/core/GMemoryOutputStream.h"
#include "foundation/prefs/GDictListReader.h"
#include "foundation/prefs/GPrefFileModule.h"
#include "foundation/prefs/GPrefWriter.h"
#include "foundation/prefs/GText2BinStream.h"

GBuffer WriteDocument(const SortedGroups& groups, const GEncodingRef& encoding)
{
    GPrefGroups written;
    for (const auto& group : groups) {
        GPrefGroup& entries = written.Insert(group.first, {});
        for (const auto& entry : group.second)
            entries.Insert(entry.first, entry.second);
    }
    GMemoryOutputStream memory;
    GText2BinStream stream(memory, encoding);
    GPrefWriter::WriteDocument(stream, written);
    return memory.GetData();
}

ReadDocument ParseDocument(const GBuffer& bytes, const GEncodingRef& encoding)
{
    GMemoryInputStream source(bytes);
    GDictListReader<GBuffer, GBuffer, GString> reader;
    GPrefGroups groups;
    ReadDocument result;
    result.isRead = reader.Read(source, encoding, groups);
    result.damagePosition = reader.GetDamagePosition();
    for (const auto& group : groups) {
        auto& entries = result.groups[group.key];
        for (const auto& entry : group.value)
            entries[entry.key] = entry.value;
    }
    return result;
}

std::string GetText(const GPrefModule& module)
{
    QStringList entries;
    std::vector<GBuffer> names;
    module.GetGroupNames(names);
    for (const GBuffer& name : names) {
        GPrefGroup group;
        module.GetGroupPreferences(name, group);
        for (const auto& entry : group)
            entries += QString::fromLatin1(name + '.' + entry.key + '=') + entry.value;
    }
    entries.sort();
    return entries.join(QLatin1Char(' ')).toStdString();
}

std::string ReadText(const QString& path)
{
    return GetText(GPrefFileModule(GPathName(path), nullptr));
}
