#pragma once

// Whether a person sees standard error as it is written: it goes to a terminal, and a line can be written
// over.
bool IsErrorTerminal();
