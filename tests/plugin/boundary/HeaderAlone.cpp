#include "plugin/boundary/hopbox_host.h"
