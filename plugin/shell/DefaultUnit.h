#pragma once

class IActiveContext;

// Takes the unit in which the host shows horizontal lengths as the plug-in's default unit; points where the
// host can't tell or has another unit.
void TakeDefaultUnit(IActiveContext* context);
