#pragma once

// The text of host.py, which Scribus runs. It is built in, so that no file beside the program can stand in
// its place.
extern const char* const cHostScript;
