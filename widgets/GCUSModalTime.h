#pragma once

#include "widgets/GCUSModal.h"

#include <memory>

class QDialog;

// For the time that a dialog is modal: makes it a window of the parent window, in a scope of the modal hooks.
// A dialog with a parent widget belongs to that; without a parent window it opens all the same. The dialog
// outlives this.
class GCUSModalTime
{
public:
    explicit GCUSModalTime(QDialog& dialog);
    ~GCUSModalTime();
    GCUSModalTime(const GCUSModalTime&) = delete;
    GCUSModalTime& operator=(const GCUSModalTime&) = delete;

private:
    class ParentWindowLink;

    std::unique_ptr<ParentWindowLink> mLink;
    GCUSModal::Scope mScope;
};

// Runs a dialog modally that does not see to it itself, as a message box. Gives the dialog's result.
int RunModally(QDialog& dialog);
