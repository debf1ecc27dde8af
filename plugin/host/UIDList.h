#pragma once

#include "plugin/host/HostIdentifiers.h"

#include <vector>

// The database that a document's objects are in. The plug-in only passes it on; the document owns it.
class IDataBase;

// A list of objects of one database, such as pages, in any order; an object may be in it twice.
class UIDList
{
public:
    explicit UIDList(const IDataBase* database) : mDatabase(database) {}

    const IDataBase* GetDataBase() const { return mDatabase; }

    void Append(UID uid) { mUIDs.push_back(uid); }
    void Clear() { mUIDs.clear(); }

    int Length() const { return static_cast<int>(mUIDs.size()); }
    bool IsEmpty() const { return mUIDs.empty(); }
    UID operator[](int index) const { return mUIDs[static_cast<size_t>(index)]; }

private:
    const IDataBase* mDatabase;
    std::vector<UID> mUIDs;
};
