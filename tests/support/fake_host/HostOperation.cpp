#include "tests/support/fake_host/HostOperation.h"

#define ABSENT(name) {HostOperation::name, #name, true, false},
#define FAILS(name) {HostOperation::name, #name, false, true},
#define BOTH(name) {HostOperation::name, #name, true, true},

const std::vector<HostOperationInfo>& GetHostOperations()
{
    static const std::vector<HostOperationInfo> operations = {HOST_OPERATIONS(ABSENT, FAILS, BOTH)};
    return operations;
}

QString GetName(HostOperation operation)
{
    return QString::fromLatin1(GetHostOperations()[static_cast<size_t>(operation)].name);
}
