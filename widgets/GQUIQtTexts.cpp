#include <QCoreApplication>

// Qt's own texts that our windows show, so that our translations hold them too: the menus of the fields
// and scroll bars with their keys, and what screen readers are told that controls can do.
[[maybe_unused]] static const char* const cQtTexts[] = {
    QT_TRANSLATE_NOOP("QLineEdit", "&Undo"),
    QT_TRANSLATE_NOOP("QLineEdit", "&Redo"),
    QT_TRANSLATE_NOOP("QLineEdit", "Cu&t"),
    QT_TRANSLATE_NOOP("QLineEdit", "&Copy"),
    QT_TRANSLATE_NOOP("QLineEdit", "&Paste"),
    QT_TRANSLATE_NOOP("QLineEdit", "Delete"),
    QT_TRANSLATE_NOOP("QLineEdit", "Select All"),
    QT_TRANSLATE_NOOP("QWidgetTextControl", "&Copy"),
    QT_TRANSLATE_NOOP("QWidgetTextControl", "Select All"),
    QT_TRANSLATE_NOOP("QShortcut", "Ctrl"),
    QT_TRANSLATE_NOOP("QShortcut", "Shift"),
    QT_TRANSLATE_NOOP("QShortcut", "Alt"),
    QT_TRANSLATE_NOOP("QScrollBar", "Scroll here"),
    QT_TRANSLATE_NOOP("QScrollBar", "Top"),
    QT_TRANSLATE_NOOP("QScrollBar", "Bottom"),
    QT_TRANSLATE_NOOP("QScrollBar", "Page up"),
    QT_TRANSLATE_NOOP("QScrollBar", "Page down"),
    QT_TRANSLATE_NOOP("QScrollBar", "Scroll up"),
    QT_TRANSLATE_NOOP("QScrollBar", "Scroll down"),
    QT_TRANSLATE_NOOP("QAccessibleActionInterface", "Press"),
    QT_TRANSLATE_NOOP("QAccessibleActionInterface", "Check"),
    QT_TRANSLATE_NOOP("QAccessibleActionInterface", "Uncheck"),
    QT_TRANSLATE_NOOP("QAccessibleActionInterface", "Toggle"),
    QT_TRANSLATE_NOOP("QAccessibleActionInterface", "SetFocus"),
    QT_TRANSLATE_NOOP("QAccessibleActionInterface", "ShowMenu"),
    QT_TRANSLATE_NOOP("QComboBox", "Open the combo box selection popup"),
};
