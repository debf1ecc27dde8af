#pragma once

#include "foundation/strings/GUserMessage.h"

// The plug-in's alerts: message boxes in front of the host's window. They need a QApplication; without one an
// alert goes to the log, and a warning counts as answered with "Cancel".
class GCSPUUserMessage : public GUserMessage
{
public:
    void ShowInfoMessage(const GString& title, const GString& text) override;
    void ShowErrorMessage(const GString& title, const GString& text) override;
    [[nodiscard]] bool ShowWarningMessage(const GString& title, const GString& text) override;
};
