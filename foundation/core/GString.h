#pragma once

#include <QByteArray>
#include <QString>

// Unicode text: every value, path text and text that a user sees.
using GString = QString;

// Bytes or 8-bit text: names and keys of settings, raw file data, encoded text.
using GBuffer = QByteArray;
