#pragma once

#include "foundation/core/GEncoding.h"

// The encodings that depend on the operating system; GEncoding makes each once.
GEncodingRef MakeOEMEncoding();
GEncodingRef MakePlatform8BitEncoding();
