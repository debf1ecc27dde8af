#pragma once

// Registers the foundation's own texts, the four of its inter-process lock, with the string pool.
void RegisterFoundationMessages();
