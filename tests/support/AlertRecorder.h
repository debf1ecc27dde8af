#pragma once

#include "foundation/strings/GUserMessage.h"

#include <QStringList>

// An alert service that keeps the errors it is told of as "title|text", where a test reads them instead of
// closing windows. The list outlives it.
class AlertRecorder : public GUserMessage
{
public:
    explicit AlertRecorder(QStringList& errors) : mErrors(errors) {}

    void ShowInfoMessage(const GString&, const GString&) override {}
    void ShowErrorMessage(const GString& title, const GString& text) override
    {
        mErrors.append(title + QLatin1Char('|') + text);
    }
    bool ShowWarningMessage(const GString&, const GString&) override { return false; }

private:
    QStringList& mErrors;
};
