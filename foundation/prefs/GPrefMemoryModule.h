#pragma once

#include "foundation/prefs/GPrefModule.h"

// Settings that are stored nowhere: defaults, or a document that came from elsewhere as text or bytes. A
// flush only removes the dirty mark; a refresh does nothing.
class GPrefMemoryModule : public GPrefModule
{
public:
    GPrefMemoryModule();

    // Holds what can be read of a document's text.
    explicit GPrefMemoryModule(const GString& text);

    // Holds what can be read of a document's bytes in the encoding, null to find it.
    GPrefMemoryModule(const GBuffer& bytes, const GEncodingRef& encoding);

    // The content as a document's text.
    GString GetPrefsData() const;

    void ReadDict() override;
    void WriteDict() override;
};
