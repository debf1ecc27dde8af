#include "hosts/scribus/IHostFrontend.h"

IHostFrontend::~IHostFrontend() = default;
