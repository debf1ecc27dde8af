#pragma once

#include "foundation/core/GString.h"

#include <memory>

// The service that shows alerts to the user. One object is installed for the process at start-up and removed
// at shutdown; all code gets it from GetInstance. For the main thread.
class GUserMessage
{
public:
    GUserMessage() = default;
    virtual ~GUserMessage();
    GUserMessage(const GUserMessage&) = delete;
    GUserMessage& operator=(const GUserMessage&) = delete;

    // Each shows an alert and returns when the user has closed it.
    virtual void ShowInfoMessage(const GString& title, const GString& text) = 0;
    virtual void ShowErrorMessage(const GString& title, const GString& text) = 0;

    // True exactly when the answer was not "OK".
    [[nodiscard]] virtual bool ShowWarningMessage(const GString& title, const GString& text) = 0;

    // Installs the service, or with null removes it.
    static void SetInstance(std::unique_ptr<GUserMessage> instance);

    // The installed service; null when there is none.
    static GUserMessage* GetInstance();
};
