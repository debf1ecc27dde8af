#include "foundation/trace/ILogInterface.h"

Morvane::ILogInterface::~ILogInterface() = default;
