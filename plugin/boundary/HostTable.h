#pragma once

#include "plugin/boundary/hopbox_host.h"
#include "plugin/host/IHostServices.h"

#include <map>

// The table of a host that is written in the classes of plugin/host, for the module at the other side of the
// boundary. Keeps the objects behind the handles that it has given out; a handle that it has not, or of
// another kind, is a failure. What the host raises is logged and becomes HOPBOX_FAILED; a command, an opening
// or a saving during which the user has cancelled gives HOPBOX_CANCELLED, whatever else it gave. For the
// host's main thread.
class HostTable
{
public:
    // The services outlive this object, and this object the module's use of it.
    explicit HostTable(IHostServices& services) : mServices(services) {}
    HostTable(const HostTable&) = delete;
    HostTable& operator=(const HostTable&) = delete;

    // What hopbox_plugin_table::load takes, with this object as the host's pointer.
    static const hopbox_host_table& GetTable();

    // Handles that were not released.
    size_t GetHandleCount() const { return mObjects.size(); }

    // For the table's functions.

    // What a handle stands for: one of these, with what a command was asked for.
    struct Object
    {
        HostPtr<IDocument> document;
        HostPtr<IBook> book;
        HostPtr<ICommand> command;
        HostPtr<IDocumentPackageCommand> documentPackage;
        HostPtr<IBookPackageCommand> bookPackage;
        HostPtr<IPDFExportPreferences> preferences;

        IPackageCommand* GetPackage() const;
    };

    IHostServices& GetServices() const { return mServices; }
    hopbox_handle Keep(Object object);
    void Release(hopbox_handle handle);  // one that is none is ignored

    // Raises for a handle that is none of this host's; the second for one that stands for no such object.
    Object& Get(hopbox_handle handle);
    template <class Interface>
    Interface& Get(hopbox_handle handle, HostPtr<Interface> Object::*kind)
    {
        const HostPtr<Interface>& object = Get(handle).*kind;
        if (!object)
            RaiseBadHandle();
        return *object;
    }

private:
    [[noreturn]] static void RaiseBadHandle();

    IHostServices& mServices;
    std::map<hopbox_handle, Object> mObjects;
    hopbox_handle mLast = 0;
};
