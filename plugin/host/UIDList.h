#pragma once

#include "plugin/host/HostIdentifiers.h"

#include <vector>

// The database that a document's objects live in. Only ever passed on; the document owns it.
class IDataBase;

// Objects of one database, such as pages, in an order of their own; an object may stand in it twice.
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
