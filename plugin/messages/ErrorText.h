#pragma once

#include "foundation/core/GString.h"

#include <QStringList>

#include <cstdint>

class GException;

// Makes the text of a failed export step from the string pool, in the language that is current then.
namespace ErrorText
{
// The frame with the code's text in it, and the detail right behind. A code that is not known leaves the
// frame without a text.
GString Compose(uint32_t code, const GString& detail = GString());

// The detail of PlugInMessage::cFontMissing and cFontsMissing: a line break, then a line for each font in the
// order of the list, numbered from 1.
GString GetMissingFontDetail(const QStringList& fonts);

// The text of PlugInMessage::cSettingNotFound for a setting, without the frame.
GString GetSettingNotFound(const GString& setting);

// The text for what the foundation has raised. The description is the system's words in no particular
// language; where the current language has a sentence for the error's code, it stands in that.
GString Describe(const GException& error);

// The same for whatever is being handled, in a catch clause.
GString DescribeCurrent();
}  // namespace ErrorText
