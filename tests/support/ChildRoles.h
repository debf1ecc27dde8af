#pragma once

#include <QString>
#include <QStringList>

// Runs the role that a test registered under the name; gives the exit status of the process.
int RunChildRole(const QString& name, const QStringList& arguments);

// The end of a test program's main, with its application: runs the tests, or, called with "--child ROLE
// ARG…", one role of a second process. Gives the exit status.
int RunTests(int argc, char** argv);
