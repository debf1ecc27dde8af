#include "hosts/scribus/pdffile/PdfFile.h"

#include "hosts/scribus/pdffile/PdfTry.h"

#include <QFile>

#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <qpdf/QPDFWriter.hh>

#include <set>

// How Scribus begins the marks of a page; the rest of its content has numbers of five decimals.
static const std::string cMarksBegin = "\n0.5 w 0 j 0 J [] 0 d\n";

constexpr int cDeepestValue = 16;  // of a dictionary's direct values, in which profiles are looked for

static bool IsName(QPDFObjectHandle value, const char* name)
{
    return value.isName() && value.getName() == name;
}

// The profile's stream of such a colour space; null for any other.
static QPDFObjectHandle GetProfile(QPDFObjectHandle space)
{
    const bool isProfile = space.isArray() && space.getArrayNItems() == 2 &&
                           IsName(space.getArrayItem(0), "/ICCBased") && space.getArrayItem(1).isStream();
    return isProfile ? space.getArrayItem(1) : QPDFObjectHandle::newNull();
}

static const char* GetDeviceSpace(QPDFObjectHandle profile)
{
    QPDFObjectHandle parts = profile.getDict().getKey("/N");
    switch (parts.isInteger() ? parts.getIntValueAsInt() : 0) {
        case 1:
            return "/DeviceGray";
        case 4:
            return "/DeviceCMYK";
        default:
            return "/DeviceRGB";
    }
}

// Puts the device's colours in the place of the profiles, in the value itself and those inside it.
static QPDFObjectHandle ReplaceProfiles(QPDFObjectHandle value, const std::set<QPDFObjGen>& profiles,
                                        int depth)
{
    QPDFObjectHandle profile = GetProfile(value);
    if (!profile.isNull() && profiles.count(profile.getObjGen()) > 0)
        return QPDFObjectHandle::newName(GetDeviceSpace(profile));
    if (depth > cDeepestValue)
        return value;
    const auto isInside = [](const QPDFObjectHandle& item) {
        return !item.isIndirect() &&
               (QPDFObjectHandle(item).isArray() || QPDFObjectHandle(item).isDictionary());
    };
    QPDFObjectHandle holder = value.isStream() ? value.getDict() : value;
    if (holder.isDictionary()) {
        for (auto& [key, item] : holder.getDictAsMap()) {
            if (isInside(item))
                holder.replaceKey(key, ReplaceProfiles(item, profiles, depth + 1));
        }
    } else if (holder.isArray()) {
        for (int i = 0; i < holder.getArrayNItems(); ++i) {
            if (isInside(holder.getArrayItem(i)))
                holder.setArrayItem(i, ReplaceProfiles(holder.getArrayItem(i), profiles, depth + 1));
        }
    }
    return value;
}

PdfFile::PdfFile() = default;
PdfFile::~PdfFile() = default;

GResult PdfFile::Open(const QString& path)
{
    mPdf = std::make_unique<QPDF>();
    return PdfTry([&] {
        mPdf->setSuppressWarnings(true);
        mPdf->setAttemptRecovery(false);
        mPdf->processFile(QFile::encodeName(path).constData());
        mPageCount = static_cast<int>(QPDFPageDocumentHelper(*mPdf).getAllPages().size());
        mScan = std::make_unique<PdfScan>(*mPdf);
    });
}

bool PdfFile::BearsMarkOfX() const
{
    QPDFObjectHandle information = mPdf->getTrailer().getKey("/Info");
    QPDFObjectHandle intents = mPdf->getRoot().getKey("/OutputIntents");
    const bool isMarked = information.isDictionary() && information.hasKey("/GTS_PDFXVersion");
    bool hasIntent = false;
    for (int i = 0; intents.isArray() && i < intents.getArrayNItems(); ++i) {
        QPDFObjectHandle intent = intents.getArrayItem(i);
        hasIntent = hasIntent || (intent.isDictionary() && IsName(intent.getKey("/S"), "/GTS_PDFX"));
    }
    return isMarked && hasIntent;
}

GResult PdfFile::Change(const PdfWishes& wishes, const PdfImages::IsGray& isGray,
                        const std::function<bool()>& isCancelled)
{
    const auto change = [&] {
        PdfImages(wishes.images, isGray).Change(*mScan, isCancelled);
        if (!wishes.keepsProfiles)
            DropProfiles();
        if (!wishes.mayBeTransparent)
            DropGroups();
        if (wishes.markWeight >= 0)
            SetWeightOfMarks(wishes.markWeight, wishes.compressesText);
        if (wishes.isX)
            SetIntent(wishes);
        if (!wishes.trapped.isEmpty())
            SetTrapped(wishes.trapped);
    };
    return PdfTry(change).Then([&] { return isCancelled() ? GResult::Cancellation() : GResult::Success(); });
}

// Profiles of placed files are theirs, and stay.
void PdfFile::DropProfiles()
{
    std::set<QPDFObjGen> profiles;
    const auto add = [&](QPDFObjectHandle space) {
        QPDFObjectHandle profile = GetProfile(space);
        if (!profile.isNull())
            profiles.insert(profile.getObjGen());
    };
    for (const auto& entry : mScan->GetImages()) {
        if (!entry.second.isInPlacedFile)
            add(QPDFObjectHandle(entry.second.object).getDict().getKey("/ColorSpace"));
    }
    for (QPDFPageObjectHelper& page : QPDFPageDocumentHelper(*mPdf).getAllPages()) {
        QPDFObjectHandle resources = page.getAttribute("/Resources", false);
        QPDFObjectHandle spaces = resources.isDictionary() ? resources.getKey("/ColorSpace") : resources;
        for (const std::string& name : spaces.isDictionary() ? spaces.getKeys() : std::set<std::string>())
            add(spaces.getKey(name));
    }
    for (QPDFObjectHandle& object : mPdf->getAllObjects()) {
        QPDFObjectHandle replaced = ReplaceProfiles(object, profiles, 0);
        if (replaced.isName())
            mPdf->replaceObject(object.getObjGen(), replaced);
    }
}

// A group that nothing shines through looks the same without its mark.
void PdfFile::DropGroups()
{
    for (QPDFObjectHandle& object : mPdf->getAllObjects()) {
        QPDFObjectHandle dictionary = object.isStream() ? object.getDict() : object;
        QPDFObjectHandle group = dictionary.isDictionary() ? dictionary.getKey("/Group") : dictionary;
        if (group.isDictionary() && IsName(group.getKey("/S"), "/Transparency"))
            dictionary.removeKey("/Group");
    }
}

void PdfFile::SetWeightOfMarks(double points, bool isCompressed)
{
    for (QPDFPageObjectHelper& page : QPDFPageDocumentHelper(*mPdf).getAllPages()) {
        const std::vector<QPDFObjectHandle> contents = page.getPageContents();
        if (contents.empty())
            continue;
        QPDFObjectHandle last = contents.back();
        const auto buffer = last.getStreamData();
        std::string text(reinterpret_cast<const char*>(buffer->getBuffer()), buffer->getSize());
        const size_t begin = text.rfind(cMarksBegin);
        if (begin == std::string::npos)
            continue;
        const std::string weight = QString::number(points, 'f', 4).toStdString();
        text.replace(begin + 1, sizeof("0.5") - 1, weight);
        const QPDFObjectHandle none = QPDFObjectHandle::newNull();
        if (isCompressed)
            last.replaceStreamData(PdfImages::Deflate(text), QPDFObjectHandle::newName("/FlateDecode"), none);
        else
            last.replaceStreamData(text, none, none);
    }
}

void PdfFile::SetIntent(const PdfWishes& wishes)
{
    QPDFObjectHandle intents = mPdf->getRoot().getKey("/OutputIntents");
    for (int i = 0; intents.isArray() && i < intents.getArrayNItems(); ++i) {
        QPDFObjectHandle intent = intents.getArrayItem(i);
        const auto set = [&](const char* key, const QString& text) {
            if (!text.isEmpty() && intent.isDictionary())
                intent.replaceKey(key, QPDFObjectHandle::newUnicodeString(text.toStdString()));
        };
        set("/OutputCondition", wishes.condition);
        set("/OutputConditionIdentifier", wishes.conditionIdentifier);
        set("/RegistryName", wishes.registry);
    }
}

void PdfFile::SetTrapped(const QString& trapped)
{
    QPDFObjectHandle information = mPdf->getTrailer().getKey("/Info");
    if (information.isDictionary())
        information.replaceKey("/Trapped", QPDFObjectHandle::newName("/" + trapped.toStdString()));
    QPDFObjectHandle metadata = mPdf->getRoot().getKey("/Metadata");
    if (!metadata.isStream())
        return;
    const auto buffer = metadata.getStreamData();
    std::string text(reinterpret_cast<const char*>(buffer->getBuffer()), buffer->getSize());
    const std::string mark = "pdf:Trapped=\"";
    const size_t begin = text.find(mark);
    const size_t end = begin == std::string::npos ? begin : text.find('"', begin + mark.size());
    if (end == std::string::npos)
        return;
    text.replace(begin + mark.size(), end - begin - mark.size(), trapped.toStdString());
    metadata.replaceStreamData(text, QPDFObjectHandle::newNull(), QPDFObjectHandle::newNull());
}

void PdfFile::WriteTo(QPDF& pdf, const QString& path, const PdfWishes& wishes)
{
    const QByteArray file = QFile::encodeName(path);  // the writer keeps the pointer
    QPDFWriter writer(pdf, file.constData());
    writer.setDecodeLevel(qpdf_dl_none);
    writer.setCompressStreams(false);  // an image may be meant to have none
    if (wishes.compressesObjects)
        writer.setObjectStreamMode(qpdf_o_generate);
    writer.setLinearization(wishes.isLinear);
    if (!wishes.version.isEmpty())
        writer.forcePDFVersion(wishes.version.toStdString());
    writer.write();
}

GResult PdfFile::Write(const QString& path, const PdfWishes& wishes)
{
    return PdfTry([&] { WriteTo(*mPdf, path, wishes); });
}
