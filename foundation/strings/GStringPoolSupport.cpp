#include "foundation/strings/GStringPoolSupport.h"

#include "foundation/core/GDictUtil.h"
#include "foundation/core/GErrorCodes.h"
#include "foundation/core/GException.h"
#include "foundation/core/GStringSupport.h"
#include "foundation/strings/GStringFileReader.h"
#include "foundation/strings/GStringPool.h"

#include <QDir>

namespace
{
struct StringFileParameters
{
    GPathName folder;
    GString prefix;
    int32_t lowestVersion = 0;
    int32_t highestVersion = 0;
    int32_t versionLength = 0;
};

StringFileParameters& GetParameters()
{
    static StringFileParameters parameters;
    return parameters;
}

GString WithPlatformLineEnds(const GString& text)
{
    GString result = text;
    result.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    result.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    return result.replace(QLatin1Char('\n'), GDictUtil::GetEOLString());
}

GString GetRowText(const char* text, const GEncoding& encoding, bool isHex)
{
    if (isHex)
        return encoding.Decode(GBuffer::fromHex(text));
    return WithPlatformLineEnds(encoding.Decode(text));
}
}  // namespace

bool GStringPoolSupport::sDefaultStringFileParamsSet = false;

void GStringPoolSupport::AddStringPoolData(const GString& language, const GString& encodingName,
                                           const GStringPoolDataStruct* rows, size_t count, bool isHex)
{
    const GEncodingRef encoding = GEncoding::FindByName(encodingName);
    if (encoding == nullptr) {
        throw GCustomException(GErrorCode::cIllegalArgument,
                               QStringLiteral("No encoding is named \"%1\".").arg(encodingName));
    }
    GStringPoolTable& table = GStringPool::GetTable(language);
    uint32_t code = cNextStringCode;
    for (const GStringPoolDataStruct* row = rows; row != rows + count; ++row) {
        code = row->code == cNextStringCode ? code + 1 : row->code;
        table.SetDefaultString(code, GetRowText(row->text, *encoding, isHex), encoding);
    }
}

void GStringPoolSupport::ReadStringFiles(const GPathName& folder, const GString& prefix,
                                         int32_t lowestVersion, int32_t highestVersion, int32_t versionLength)
{
    GetParameters() = {folder, prefix, lowestVersion, highestVersion, versionLength};
    sDefaultStringFileParamsSet = true;
    GStringPool::sLanguagesRead.clear();
}

bool GStringPoolSupport::IsStringFile(const GPathName& path, const GString& prefix, int32_t lowestVersion,
                                      int32_t highestVersion, int32_t versionLength, const GString& language)
{
    if (language.isEmpty() || path.GetExtension().toUpper() != QLatin1String("LNG"))
        return false;
    const GString name = path.GetLeafWithoutExtension().toUpper();
    if (!name.startsWith(prefix.toUpper()) || !name.contains(language.toUpper()))
        return false;
    if (name.size() < prefix.size() + language.size() + versionLength)
        return false;
    const int32_t version = GStringSupport::ToInt32(name.mid(prefix.size(), versionLength));
    return lowestVersion <= version && version <= highestVersion;
}

int GStringPoolSupport::ReadDefaultStringFile(const GString& language)
{
    const StringFileParameters& parameters = GetParameters();
    if (!sDefaultStringFileParamsSet || parameters.folder.IsEmpty())
        return 0;
    const QDir folder(parameters.folder.GetNativePath());
    int count = 0;
    for (const GString& name : folder.entryList(QDir::Files, QDir::Name)) {
        const GPathName path(folder.absoluteFilePath(name));
        const bool isWanted = IsStringFile(path, parameters.prefix, parameters.lowestVersion,
                                           parameters.highestVersion, parameters.versionLength, language);
        if (isWanted && GStringFileReader::ParseStringFile(path, language))
            ++count;
    }
    return count;
}

void GStringPoolSupport::ForgetStringFiles()
{
    GetParameters() = StringFileParameters();
    sDefaultStringFileParamsSet = false;
    GStringPool::sLanguagesRead.clear();
}
