#pragma once

// Registers the English texts of all codes of PlugInMessage with the string pool. A text that is there stays,
// so that registering twice changes nothing.
void RegisterPlugInMessages();
