#include "foundation/prefs/GMorvaneGeneralPrefs.h"

const GBuffer GMorvaneGeneralPrefs::cGroupIDGeneralPrefs = QByteArrayLiteral("General");
const GBuffer GMorvaneGeneralPrefs::cPrefIDLanguage = QByteArrayLiteral("Language");
const GBuffer GMorvaneGeneralPrefs::cPrefIDUnit = QByteArrayLiteral("Unit");
