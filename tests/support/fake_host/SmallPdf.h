#pragma once

#include <QByteArray>

// A valid PDF of so many empty A4 pages.
QByteArray MakeSmallPdf(int pageCount);
