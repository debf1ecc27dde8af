#pragma once

#include "tests/support/PrinterProcessor.h"
#include "tests/support/Test.h"

#include <QJsonArray>
#include <QProcess>

#include <memory>

// A root with a Hopbox "Press", the script and the helper as a user has them, documents, and a receiver.
class Workplace
{
public:
    explicit Workplace(const QByteArray& jobOptions = "<< /CompatibilityLevel 1.4 >> setdistillerparams\n",
                       const QStringList& settings = {});

    // Waits for the helper's end: it would miss its folders.
    ~Workplace();
    Workplace(const Workplace&) = delete;
    Workplace& operator=(const Workplace&) = delete;

    // Makes a document with pages of these names.
    QString MakeDocument(const QString& name, const QStringList& pages, const QStringList& links = {},
                         const QString& fontStatus = "INSTALLED"_q) const;
    QString MakeBook(const QString& name, const QStringList& documents) const;

    // What the user does in the helper's windows from now on; see the simulation's Hand.cpp.
    void SetSteps(const QByteArray& steps) const { WriteFile(sandbox.GetPath("steps"_q), steps); }

    // What the helper's windows have said since the last call, a line for each.
    QStringList TakeWindows();

    // The files that the receiver has taken over so far.
    QStringList GetReceived() const;

    QString GetPlaceFile() const;
    QJsonObject ReadPlace() const;

    bool WaitForHelpersEnd() const;

    Sandbox sandbox;
    std::unique_ptr<PrinterProcessor> receiver;

private:
    int mWindows = 0;
};

// For the helper: its user is the hand, and its windows are on no screen.
QProcessEnvironment MakeHelperEnvironment(const Workplace& workplace);

// The simulated application with the compiled script in it.
class SimulatedApplication
{
public:
    explicit SimulatedApplication(const Workplace& workplace, QJsonObject setting = {});
    ~SimulatedApplication();
    SimulatedApplication(const SimulatedApplication&) = delete;
    SimulatedApplication& operator=(const SimulatedApplication&) = delete;

    // Has it do what `obey` in application.js knows.
    void Do(const char* what, QJsonObject arguments = {});

    // Chooses the entry of a menu and waits until the script is at rest again; gives what the application
    // has said meanwhile. The last is its report.
    QJsonArray Choose(const char* menu = "file");

    // Waits for rest; gives the report.
    QJsonObject WaitForRest();

    // What it says next under a key; an empty object when it ends or is silent for a minute.
    QJsonObject Hear(const char* key);

    bool WaitForEnd();

    // What was heard since the last Choose.
    QJsonArray heard;

private:
    QProcess mProcess;
};

// The first of the events that has the key; empty for none.
QJsonObject Find(const QJsonArray& events, const char* key);
