#pragma once

#include <cstdint>

// Asks a process to end in the ways in which the system or a person at the terminal does.
enum class StopKind
{
    Terminate,
    Interrupt
};
void StopProcess(uint32_t processID, StopKind kind);

// Whether the tests can stop a process so here, and take its output away: under Wine there is no console to
// do it from, and a pipe whose reader has ended still takes what is written.
bool CanStopProcesses();
