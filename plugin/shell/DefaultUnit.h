#pragma once

class IActiveContext;

// Makes the unit in which the host shows horizontal lengths the plug-in's default unit. It is points if the
// host can't tell its unit or has one that the plug-in does not know.
void TakeDefaultUnit(IActiveContext* context);
