#include "hosts/scribus/pdffile/PdfImages.h"

#include "hosts/scribus/pdffile/PdfSamples.h"

#include <qpdf/Pl_DCT.hh>
#include <qpdf/Pl_Flate.hh>
#include <qpdf/Pl_String.hh>

#include <algorithm>
#include <cmath>

using Coding = PdfImageRule::Coding;

namespace
{
int GetInteger(QPDFObjectHandle dictionary, const char* key)
{
    QPDFObjectHandle value = dictionary.getKey(key);
    return value.isInteger() ? value.getIntValueAsInt() : 0;
}

bool IsTrue(QPDFObjectHandle value)
{
    return value.isBool() && value.getBoolValue();
}

// The parts of a dot in a colour space; 0 for one that is left alone.
int CountParts(QPDFObjectHandle space)
{
    if (space.isArray() && space.getArrayNItems() == 1)
        space = space.getArrayItem(0);
    if (space.isName()) {
        const std::string name = space.getName();
        return name == "/DeviceGray" ? 1 : (name == "/DeviceRGB" ? 3 : (name == "/DeviceCMYK" ? 4 : 0));
    }
    const bool isProfile = space.isArray() && space.getArrayNItems() == 2 && space.getArrayItem(0).isName() &&
                           space.getArrayItem(0).getName() == "/ICCBased" && space.getArrayItem(1).isStream();
    const int parts = isProfile ? GetInteger(space.getArrayItem(1).getDict(), "/N") : 0;
    return parts == 1 || parts == 3 || parts == 4 ? parts : 0;
}

int CountBits(QPDFObjectHandle dictionary)
{
    return IsTrue(dictionary.getKey("/ImageMask")) ? 1 : GetInteger(dictionary, "/BitsPerComponent");
}

bool IsCodedAs(QPDFObjectHandle dictionary, const char* filter)
{
    QPDFObjectHandle value = dictionary.getKey("/Filter");
    if (value.isArray() && value.getArrayNItems() == 1)
        value = value.getArrayItem(0);
    return value.isName() && value.getName() == filter;
}

// Settings of the JPEG coder.
class JpegSettings : public Pl_DCT::CompressConfig
{
public:
    explicit JpegSettings(const PdfImageRule& rule) : mRule(rule) {}

    void apply(jpeg_compress_struct* coder) override
    {
        const int percent = static_cast<int>(std::lround(mRule.qFactor * 100));
        jpeg_set_linear_quality(coder, std::clamp(percent, 1, 5000), TRUE);
        for (int i = 0; i < coder->num_components; ++i) {
            const int samples = i == 0 && mRule.halvesColor && coder->num_components == 3 ? 2 : 1;
            coder->comp_info[i].h_samp_factor = samples;
            coder->comp_info[i].v_samp_factor = samples;
        }
    }

private:
    const PdfImageRule& mRule;
};

// In pieces, as the coders count in 32 bits.
void RunThrough(Pipeline& coder, const char* bytes, size_t length)
{
    constexpr size_t cPiece = 1024 * 1024;
    for (size_t done = 0; done < length; done += cPiece)
        coder.write(reinterpret_cast<const unsigned char*>(bytes + done), std::min(cPiece, length - done));
    coder.finish();
}

std::string EncodeJpeg(const PdfSamples& samples, const PdfImageRule& rule)
{
    static constexpr J_COLOR_SPACE cSpaces[] = {JCS_UNKNOWN, JCS_GRAYSCALE, JCS_UNKNOWN, JCS_RGB, JCS_CMYK};
    JpegSettings settings(rule);
    std::string coded;
    Pl_String end("end", nullptr, coded);
    Pl_DCT coder("jpeg", &end, JDIMENSION(samples.width), JDIMENSION(samples.height), samples.parts,
                 cSpaces[samples.parts], &settings);
    RunThrough(coder, samples.bytes.data(), samples.GetLength());
    return coded;
}

}  // namespace

std::string PdfImages::Deflate(const std::string& bytes)
{
    std::string coded;
    Pl_String end("end", nullptr, coded);
    Pl_Flate coder("flate", &end, Pl_Flate::a_deflate);
    RunThrough(coder, bytes.data(), bytes.size());
    return coded;
}

const PdfImageRule& PdfImages::FindRule(const PdfImage& image) const
{
    QPDFObjectHandle dictionary = QPDFObjectHandle(image.object).getDict();
    if (CountBits(dictionary) == 1)
        return mRules.mono;
    const bool isGray = CountParts(dictionary.getKey("/ColorSpace")) == 1 || mIsGray(image);
    return isGray ? mRules.gray : mRules.color;
}

void PdfImages::Change(const PdfScan& scan, const std::function<bool()>& isCancelled)
{
    for (const auto& entry : scan.GetImages()) {
        if (isCancelled())
            return;
        ChangeImage(entry.second);
    }
}

static bool Read(QPDFObjectHandle image, PdfSamples& samples)
{
    QPDFObjectHandle dictionary = image.getDict();
    const bool isStencil = IsTrue(dictionary.getKey("/ImageMask"));
    samples.width = GetInteger(dictionary, "/Width");
    samples.height = GetInteger(dictionary, "/Height");
    samples.bits = CountBits(dictionary);
    samples.parts = isStencil ? 1 : CountParts(dictionary.getKey("/ColorSpace"));
    const bool isBilevel = samples.bits == 1 && samples.parts == 1;
    const bool isKnown = samples.parts > 0 && (samples.bits == 8 || isBilevel);
    if (!isKnown || samples.width <= 0 || samples.height <= 0)
        return false;
    Pl_String end("samples", nullptr, samples.bytes);
    if (!image.pipeStreamData(&end, 0, qpdf_dl_all, true))
        return false;
    if (samples.bytes.size() < samples.GetLength())
        return false;
    samples.bytes.resize(samples.GetLength());
    return true;
}

void PdfImages::ChangeImage(const PdfImage& image)
{
    QPDFObjectHandle object = image.object;
    const PdfImageRule& rule = FindRule(image);
    const double factor = rule.resolution > 0 && image.resolution > rule.resolution * rule.threshold
                              ? rule.resolution / image.resolution
                              : 1;
    PdfSamples samples;
    const bool isReady = factor == 1 && IsCodedAs(object.getDict(), "/DCTDecode");
    if (!isReady && Read(object, samples)) {
        if (samples.AreGrays() && mIsGray(image)) {
            samples = samples.MakeGray();
            object.getDict().replaceKey("/ColorSpace", QPDFObjectHandle::newName("/DeviceGray"));
        }
        if (factor < 1)
            samples = samples.Shrink(static_cast<int>(std::lround(samples.width * factor)),
                                     static_cast<int>(std::lround(samples.height * factor)), rule.averages);
        Write(object, samples, rule);
        ChangeMask(object.getDict().getKey("/SMask"), factor);
    }
}

// The mask that an image is seen through has as many dots as the image.
void PdfImages::ChangeMask(QPDFObjectHandle mask, double factor)
{
    PdfSamples samples;
    if (factor == 1 || !mask.isStream() || !Read(mask, samples))
        return;
    PdfImageRule rule;
    rule.coding = Coding::Flate;
    Write(mask,
          samples.Shrink(static_cast<int>(std::lround(samples.width * factor)),
                         static_cast<int>(std::lround(samples.height * factor)), true),
          rule);
}

void PdfImages::Write(QPDFObjectHandle image, const PdfSamples& samples, const PdfImageRule& rule)
{
    // A mask by colours would not find them again after JPEG.
    const bool canBeJpeg = samples.bits == 8 && !image.getDict().getKey("/Mask").isArray();
    Coding coding = rule.coding;
    if (!canBeJpeg && coding != Coding::None)
        coding = Coding::Flate;
    const std::string jpeg =
        coding == Coding::Automatic || coding == Coding::Jpeg ? EncodeJpeg(samples, rule) : std::string();
    const std::string flate =
        coding == Coding::Automatic || coding == Coding::Flate ? Deflate(samples.bytes) : std::string();
    if (coding == Coding::Automatic)
        coding = jpeg.size() < flate.size() ? Coding::Jpeg : Coding::Flate;
    QPDFObjectHandle dictionary = image.getDict();
    dictionary.replaceKey("/Width", QPDFObjectHandle::newInteger(samples.width));
    dictionary.replaceKey("/Height", QPDFObjectHandle::newInteger(samples.height));
    const QPDFObjectHandle none = QPDFObjectHandle::newNull();
    if (coding == Coding::None)
        image.replaceStreamData(samples.bytes, none, none);
    else
        image.replaceStreamData(
            coding == Coding::Jpeg ? jpeg : flate,
            QPDFObjectHandle::newName(coding == Coding::Jpeg ? "/DCTDecode" : "/FlateDecode"), none);
}
