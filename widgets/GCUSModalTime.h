#pragma once

#include "widgets/GCUSModal.h"

#include <memory>

class QDialog;

// Exists while a dialog is modal: gives the dialog the parent window, and opens a scope of the modal hooks. A
// dialog with a parent widget belongs to that widget; without a parent window the dialog opens too. The
// dialog must outlive this object.
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

// Runs a dialog modally, with a GCUSModalTime, if it does not use one itself, such as a message box. Gives
// the dialog's result.
int RunModally(QDialog& dialog);
