#pragma once

// Tells the host to rest while a window of the plug-in is modal, and gives such windows their parent. The
// hooks are installed while this object lives. Only one exists at a time.
class ModalHooks
{
public:
    ModalHooks();
    ~ModalHooks();
    ModalHooks(const ModalHooks&) = delete;
    ModalHooks& operator=(const ModalHooks&) = delete;
};
