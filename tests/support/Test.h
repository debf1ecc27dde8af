#pragma once

// What nearly every test uses: the framework, a root of its own, files, and short texts.
#include "tests/support/Sandbox.h"
#include "tests/support/TestFiles.h"
#include "tests/support/Texts.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <gtest/gtest.h>

#include <tuple>
#include <utility>
