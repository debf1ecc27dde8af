#pragma once

#include "foundation/core/GEncoding.h"
#include "foundation/prefs/GPrefGroups.h"

#include <map>

// The content of a document in an order that does not depend on its dictionaries.
using SortedGroups = std::map<GBuffer, std::map<GBuffer, GString>>;

struct ReadDocument
{
    bool isRead;
    int64_t stopPosition;
    SortedGroups groups;
};

GBuffer WriteDocument(const SortedGroups& groups, const GEncodingRef& encoding);
ReadDocument ParseDocument(const GBuffer& bytes, const GEncodingRef& encoding);
