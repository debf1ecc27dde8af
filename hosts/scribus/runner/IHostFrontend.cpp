#include "hosts/scribus/runner/IHostFrontend.h"

IHostFrontend::~IHostFrontend() = default;
