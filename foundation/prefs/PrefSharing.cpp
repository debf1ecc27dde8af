#include "foundation/prefs/PrefSharing.h"

const GBuffer& PrefSharing::GetGroup()
{
    static const GBuffer group = QByteArrayLiteral("PrefSharing");
    return group;
}
