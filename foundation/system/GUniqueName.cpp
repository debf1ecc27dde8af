#include "foundation/system/GUniqueName.h"

#include <QUuid>

GString MakeRandomName(int length)
{
    static const char cDigits[] = "0123456789abcdefghijklmnopqrstuvwxyz";
    GString name;
    while (name.size() < length) {
        // Bytes of a random UUID, but for the two that hold its version and variant.
        const QByteArray bytes = QUuid::createUuid().toRfc4122().remove(6, 3);
        for (int i = 0; i < bytes.size() && name.size() < length; ++i) {
            const int value = static_cast<unsigned char>(bytes.at(i));
            if (value < 252)  // 7 * 36: above it the first digits would come more often
                name += QLatin1Char(cDigits[value % 36]);
        }
    }
    return name;
}
