#pragma once

#include "foundation/prefs/GPrefModule.h"

#include <map>
#include <string>

// The content of a document in an order that does not depend on its dictionaries.
using SortedGroups = std::map<GBuffer, std::map<GBuffer, GString>>;

struct ReadDocument
{
    bool isRead;
    int64_t damagePosition;
    SortedGroups groups;
};

GBuffer WriteDocument(const SortedGroups& groups, const GEncodingRef& encoding);
ReadDocument ParseDocument(const GBuffer& bytes, const GEncodingRef& encoding);

// The entries of a module, and of a settings file: "group.key=value group.other=value", sorted.
std::string GetText(const GPrefModule& module);
std::string ReadText(const QString& path);
