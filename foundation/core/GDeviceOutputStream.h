#pragma once

#include "foundation/core/GOutputStream.h"

class QIODevice;

// Writes to a Qt device that is open for writing and outlives the stream.
class GDeviceOutputStream : public GOutputStream
{
public:
    explicit GDeviceOutputStream(QIODevice& device);

    void Write(const char* bytes, int count) override;

private:
    QIODevice& mDevice;
};
