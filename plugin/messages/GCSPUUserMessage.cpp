#include "plugin/messages/GCSPUUserMessage.h"

#include "foundation/trace/GTrace.h"
#include "widgets/GCUSMessageBox.h"

#include <QApplication>

// Whether a box can be shown; where it can't, the alert is logged.
static bool CanShow(const GString& title, const GString& text)
{
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) != nullptr)
        return true;
    GTrace::Error(QStringLiteral("GCSPUUserMessage"), QStringLiteral("%1: %2").arg(title, text));
    return false;
}

void GCSPUUserMessage::ShowInfoMessage(const GString& title, const GString& text)
{
    if (CanShow(title, text))
        GCUSMessageBox::ShowInformation(title, text);
}

void GCSPUUserMessage::ShowErrorMessage(const GString& title, const GString& text)
{
    if (CanShow(title, text))
        GCUSMessageBox::ShowError(title, text);
}

bool GCSPUUserMessage::ShowWarningMessage(const GString& title, const GString& text)
{
    return !CanShow(title, text) || !GCUSMessageBox::ConfirmWarning(title, text);
}
