#pragma once

// Lets the host rest while a window of the plug-in's is modal, and gives such windows their parent. Installed
// while one of these lives; there is one at a time.
class ModalHooks
{
public:
    ModalHooks();
    ~ModalHooks();
    ModalHooks(const ModalHooks&) = delete;
    ModalHooks& operator=(const ModalHooks&) = delete;
};
