#include "foundation/strings/GUserMessage.h"

static std::unique_ptr<GUserMessage>& GetInstalled()
{
    static std::unique_ptr<GUserMessage> installed;
    return installed;
}

GUserMessage::~GUserMessage() = default;

void GUserMessage::SetInstance(std::unique_ptr<GUserMessage> instance)
{
    GetInstalled() = std::move(instance);
}

GUserMessage* GUserMessage::GetInstance()
{
    return GetInstalled().get();
}
