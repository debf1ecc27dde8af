#pragma once

class QDialog;

// Makes one press of Enter one click in a dialog, however long it is held down: neither does the Enter that
// opened the dialog close it, nor is a button clicked again and again. To be called when the dialog has its
// push buttons.
void GQUIEnterOnce(QDialog& dialog);
