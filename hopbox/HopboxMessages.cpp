#include "hopbox/HopboxMessages.h"

const GString HopboxMessage::cProcessImage = QStringLiteral("PrinterProcessorWin.exe");
