#pragma once

#include "foundation/core/GString.h"

class QLocale;

// Brings the foundation up and down: the log, the message loop with its tick, the settings store and the
// string pool. Whoever needs it initialises it and releases it as often; the first initialisation does the
// work, the last release undoes it. For the main thread.
class GBasicFrameworkCoreLayer
{
public:
    // Raises what a step raises, with everything undone that was done before it, and counts for nothing then.
    //
    // The log goes to Qt's logging, unless a logger is installed already. The message loop is started where
    // there is a QCoreApplication; without one nothing ticks, and delayed signals wait. The store has no
    // modules yet: they are the program's, which calls ApplySettings when they are in place.
    static void Initialize();

    // Gives back one initialisation; the last one flushes the settings. Where that fails, or where there was
    // no initialisation to give back, says so in the log: nothing is raised.
    static void Release() noexcept;

    static bool IsInitialized();

    // Sets up the string pool with the foundation's own texts. Part of Initialize.
    static void InitializeStrings();

    // Takes up the settings of the group "General": the string pool takes on the language, and with
    // "LogToFile" set to true the log goes to the file "Morvane.log" in the user's preference folder; where
    // that can't be opened, the log says so and goes where it went. Called once the modules are in the store
    // and the string pool knows where string files are.
    static void ApplySettings();

    // The language of the user's texts: the setting "General"/"Language", else that of the system's locale.
    static GString GetLanguage();

    // The language of a locale in the form of the string pool, "deDE": its own language and country where the
    // string pool has texts for just those ("ptPT"), else the language with its main country, so that there
    // is one German whatever the country. "enUS" for none.
    static GString GetLanguageOf(const QLocale& locale);
};
