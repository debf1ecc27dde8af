#include "foundation/system/PSystem.h"

#include <QFile>

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

GString PSystem::GetLogonName()
{
    const uid_t user = geteuid();
    std::vector<char> text(1024);
    passwd record = {};
    passwd* found = nullptr;
    while (getpwuid_r(user, &record, text.data(), text.size(), &found) == ERANGE)
        text.resize(text.size() * 2);
    const bool hasName = found != nullptr && found->pw_name[0] != '\0';
    return hasName ? QFile::decodeName(found->pw_name) : QString::number(user);
}
