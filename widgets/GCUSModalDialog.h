#pragma once

class QDialog;

// Runs a dialog modally: over the parent window, in a scope of the modal hooks. The dialog has no parent
// widget of its own; without a parent window it opens all the same. Gives the dialog's result.
int RunModally(QDialog& dialog);
