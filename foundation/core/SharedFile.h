#pragma once

#include "foundation/core/GString.h"

class QFile;

// Opens the file of the name that `file` bears for reading, in a way that forbids nobody to
// write, replace or delete it meanwhile. False, and the system's reason, when it can't be opened.
bool OpenSharedForReading(QFile& file, GString& reason);
