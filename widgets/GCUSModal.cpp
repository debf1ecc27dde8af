#include "widgets/GCUSModal.h"

#include <utility>

namespace
{
GCUSModal::Hook beforeModal;
GCUSModal::Hook afterModal;
GCUSModal::ParentWindowProvider parentWindowProvider;
int depth = 0;
}  // namespace

void GCUSModal::SetHooks(Hook before, Hook after)
{
    beforeModal = std::move(before);
    afterModal = std::move(after);
}

void GCUSModal::SetParentWindowProvider(ParentWindowProvider provider)
{
    parentWindowProvider = std::move(provider);
}

WId GCUSModal::GetParentWindow()
{
    return parentWindowProvider ? parentWindowProvider() : 0;
}

GCUSModal::Scope::Scope() : mIsOutermost(depth == 0)
{
    if (mIsOutermost && beforeModal)
        beforeModal();
    ++depth;
}

GCUSModal::Scope::~Scope()
{
    --depth;
    if (mIsOutermost && afterModal)
        afterModal();
}
