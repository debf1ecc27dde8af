#pragma once

class QLocale;

// The texts of windows on the engine in the user's language. They are built in.
namespace HostTexts
{
// Takes the texts of the locale's language, for the time of the application; English stands where there are
// none. Before the first window.
void Load(const QLocale& locale);
}  // namespace HostTexts
