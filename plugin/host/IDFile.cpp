#include "plugin/host/IDFile.h"

PMString IDFile::GetFileName() const
{
    // By the text alone: a document's name must be had even where its path is one that GPathName refuses.
    const GString portable = QString(mPath).replace(QLatin1Char('\\'), QLatin1Char('/'));
    return PMString::Untranslated(mPath.mid(portable.lastIndexOf(QLatin1Char('/')) + 1));
}
