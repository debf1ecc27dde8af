#pragma once

#include "hosts/scribus/pdffile/PdfScan.h"

#include <functional>

struct PdfSamples;

// What becomes of the images of one class.
struct PdfImageRule
{
    enum class Coding
    {
        Automatic,  // JPEG, or without loss where that is smaller
        Jpeg,
        Flate,
        None
    };

    // In dots per inch: images with more than `threshold` times as many get so many. 0: none does.
    double resolution = 0;
    double threshold = 1;
    bool averages = true;  // otherwise one sample stands for those around it

    Coding coding = Coding::Automatic;
    double qFactor = 0.4;      // of JPEG: by which the standard's tables are multiplied, the finest 0
    bool halvesColor = false;  // of JPEG: colour at half the resolution

    // Images with fewer dots per inch are told, or refused.
    enum class Policy
    {
        Accept,
        Warn,
        Refuse
    };
    double leastResolution = 0;
    Policy policy = Policy::Accept;
};

struct PdfImageRules
{
    PdfImageRule color;
    PdfImageRule gray;
    PdfImageRule mono;  // of one bit: never JPEG
};

// Makes images of a finished PDF what the rules ask for. Scribus knows one rule for all images; so it writes
// them whole and without loss, and this does the rest. An image that is fine as it stands keeps its bytes,
// and so does one in a coding that the library can't read.
class PdfImages
{
public:
    // Whether an image is to be one of grays although it is written in colours whose parts are equal.
    using IsGray = std::function<bool(const PdfImage& image)>;

    PdfImages(const PdfImageRules& rules, const IsGray& isGray) : mRules(rules), mIsGray(isGray) {}

    // `isCancelled` is asked between two images; once it has said yes, the rest stays as it is.
    void Change(const PdfScan& scan, const std::function<bool()>& isCancelled);

    // The rule for an image, by its class.
    const PdfImageRule& FindRule(const PdfImage& image) const;

    // Bytes in the coding of the filter "FlateDecode".
    static std::string Deflate(const std::string& bytes);

private:
    void ChangeImage(const PdfImage& image);
    static void ChangeMask(QPDFObjectHandle mask, double factor);
    static void Write(QPDFObjectHandle image, const PdfSamples& samples, const PdfImageRule& rule);

    PdfImageRules mRules;
    IsGray mIsGray;
};
