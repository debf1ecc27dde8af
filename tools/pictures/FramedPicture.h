#pragma once

#include <QImage>

class QString;
class QWidget;

// The height of the title bar in a framed picture, in pixels of the widget.
constexpr int cTitleHeight = 28;

// A window as it looks on a screen, under a plain title bar: the offscreen platform draws none.
QImage DrawFramed(QWidget& window, const QString& title);
