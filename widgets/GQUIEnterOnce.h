#pragma once

class QDialog;

// Makes one press of Enter count as one click in a dialog, however long the key is held down. So the Enter
// that opened the dialog does not close it, and a button is not clicked again and again. Call it when the
// dialog has its push buttons.
void GQUIEnterOnce(QDialog& dialog);
