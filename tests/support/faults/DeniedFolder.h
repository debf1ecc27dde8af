#pragma once

#include <QString>

// While one lives, its folder refuses this user what is denied. What is in the folder keeps its own rights.
class DeniedFolder
{
public:
    enum Rights
    {
        cAll,
        cWriting
    };

    DeniedFolder(const QString& folder, Rights rights);
    ~DeniedFolder();
    DeniedFolder(const DeniedFolder&) = delete;
    DeniedFolder& operator=(const DeniedFolder&) = delete;

    // Whether this user can be denied anything: under Wine, root can't.
    static bool CanBe();

private:
    void* mHandle;  // opened before, as the folder then refuses this, too
    void* mRights = nullptr;
    void* mDescriptor = nullptr;  // which the rights are a part of
};
