#pragma once

class QAbstractButton;
class QComboBox;
class QString;
class QWidget;

// What a person does with a mouse and a keyboard, sent to widgets as events. For the main thread.
namespace UserEvents
{
// Presses and releases the left button: on the middle of a button or box, or at its mark.
void Click(QAbstractButton& button);

// Opens the list of a combo box and takes the entry at an index.
void Choose(QComboBox& box, int index);

// Selects what stands in a widget that takes text, and types over it.
void TypeOver(QWidget& widget, const QString& text);
}  // namespace UserEvents
