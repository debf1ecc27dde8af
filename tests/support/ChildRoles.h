#pragma once

#include <QString>
#include <QStringList>

// Runs the role that a test registered under the name; gives the exit status of the process.
int RunChildRole(const QString& name, const QStringList& arguments);
