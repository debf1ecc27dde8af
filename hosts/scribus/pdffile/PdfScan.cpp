#include "hosts/scribus/pdffile/PdfScan.h"

#include <QTransform>

#include <qpdf/Buffer.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFPageObjectHelper.hh>

#include <algorithm>
#include <cmath>
#include <set>

constexpr int cMostForms = 100000;  // that all pages together place
constexpr int cDeepestForm = 32;
constexpr size_t cMostOperands = 64;  // that any operator takes

// Operators that put something on the page, but for "Do".
static const std::set<std::string> cPainters = {"f", "F",  "f*", "B",  "B*", "b",  "b*", "S",
                                                "s", "sh", "Tj", "TJ", "'",  "\"", "EI"};

static QTransform GetMatrix(QPDFObjectHandle array)
{
    if (!array.isArray() || array.getArrayNItems() != 6)
        return {};
    double values[6] = {};
    for (int i = 0; i < 6; ++i)
        values[i] = array.getArrayItem(i).isNumber() ? array.getArrayItem(i).getNumericValue() : 0;
    return {values[0], values[1], values[2], values[3], values[4], values[5]};
}

static QRectF GetBox(QPDFObjectHandle array)
{
    if (!array.isRectangle())
        return {};
    const QPDFObjectHandle::Rectangle box = array.getArrayAsRectangle();
    return {QPointF(box.llx, box.lly), QPointF(box.urx, box.ury)};
}

static double GetNumber(QPDFObjectHandle dictionary, const char* key, double missing)
{
    QPDFObjectHandle value = dictionary.getKey(key);
    return value.isNumber() ? value.getNumericValue() : missing;
}

static bool IsName(QPDFObjectHandle value, const char* name)
{
    return value.isName() && value.getName() == name;
}

// What a graphics state makes of that before it.
static bool IsTransparentState(QPDFObjectHandle state, bool wasTransparent)
{
    QPDFObjectHandle mode = state.getKey("/BM");
    if (mode.isArray() && mode.getArrayNItems() > 0)
        mode = mode.getArrayItem(0);
    const bool isBlended = mode.isName() && mode.getName() != "/Normal" && mode.getName() != "/Compatible";
    const bool isMasked = state.getKey("/SMask").isDictionary();
    const bool isSilent =
        !state.hasKey("/BM") && !state.hasKey("/SMask") && !state.hasKey("/ca") && !state.hasKey("/CA");
    return isSilent
               ? wasTransparent
               : isBlended || isMasked || GetNumber(state, "/ca", 1) < 1 || GetNumber(state, "/CA", 1) < 1;
}

// Whether a colour space comes down to one of a kind; `resources` are the page's, for its named spaces.
static bool IsColorOf(PdfFinding::Kind kind, QPDFObjectHandle space, QPDFObjectHandle spaces, int depth = 0)
{
    constexpr int cDeepestSpace = 8;
    if (depth > cDeepestSpace)
        return false;
    if (space.isName()) {
        const std::string name = space.getName();
        if (name == "/DeviceRGB" || name == "/RGB")
            return kind == PdfFinding::Kind::DeviceRgb;
        return spaces.isDictionary() && spaces.hasKey(name) &&
               IsColorOf(kind, spaces.getKey(name), QPDFObjectHandle(), depth + 1);
    }
    if (!space.isArray() || space.getArrayNItems() < 2 || !space.getArrayItem(0).isName())
        return space.isArray() && space.getArrayNItems() == 1 &&
               IsColorOf(kind, space.getArrayItem(0), spaces, depth + 1);
    const std::string family = space.getArrayItem(0).getName();
    if (family == "/ICCBased" || family == "/CalRGB" || family == "/CalGray" || family == "/Lab")
        return kind == PdfFinding::Kind::TaggedColor;
    const bool hasAlternate = family == "/Separation" || family == "/DeviceN";
    const int base = hasAlternate ? 2 : 1;
    return space.getArrayNItems() > base && IsColorOf(kind, space.getArrayItem(base), spaces, depth + 1);
}

static bool IsFontInside(QPDFObjectHandle font)
{
    if (IsName(font.getKey("/Subtype"), "/Type3"))
        return true;
    QPDFObjectHandle holder = font;
    if (font.getKey("/DescendantFonts").isArray() && font.getKey("/DescendantFonts").getArrayNItems() > 0)
        holder = font.getKey("/DescendantFonts").getArrayItem(0);
    QPDFObjectHandle descriptor = holder.isDictionary() ? holder.getKey("/FontDescriptor") : holder;
    return descriptor.isDictionary() && (descriptor.hasKey("/FontFile") || descriptor.hasKey("/FontFile2") ||
                                         descriptor.hasKey("/FontFile3"));
}

static QString GetFontName(QPDFObjectHandle font)
{
    QPDFObjectHandle base = font.getKey("/BaseFont");
    QString name = base.isName() ? QString::fromStdString(base.getName().substr(1)) : QString();
    constexpr int cMarkLength = 7;  // "ABCDEF+" before a subset's name
    return name.indexOf(QLatin1Char('+')) == cMarkLength - 1 ? name.mid(cMarkLength) : name;
}

// Follows the operators of a page, or of a form that it places.
class PdfContentReader : public QPDFObjectHandle::ParserCallbacks
{
public:
    PdfContentReader(PdfScan& scan, int page, QPDFObjectHandle resources, const QTransform& matrix)
        : mScan(scan), mPage(page), mResources(resources), mState{matrix, false}
    {
    }

    // Goes into a form of which `outer` is the reader.
    PdfContentReader(const PdfContentReader& outer, QPDFObjectHandle form)
        : mScan(outer.mScan),
          mPage(outer.mPage),
          mResources(form.getDict().hasKey("/Resources") ? form.getDict().getKey("/Resources")
                                                         : outer.mResources),
          mState{GetMatrix(form.getDict().getKey("/Matrix")) * outer.mState.matrix,
                 outer.mState.isTransparent},
          mDepth(outer.mDepth + 1)
    {
        mPlaced =
            outer.mDepth > 0 ? outer.mPlaced : mState.matrix.mapRect(GetBox(form.getDict().getKey("/BBox")));
    }

    void handleObject(QPDFObjectHandle object) override
    {
        if (!object.isOperator()) {
            if (mOperands.size() < cMostOperands)
                mOperands.push_back(object);
            return;
        }
        Handle(object.getOperatorValue());
        mOperands.clear();
    }

    void handleEOF() override {}

private:
    struct State
    {
        QTransform matrix;  // to the page
        bool isTransparent;
    };

    void Handle(const std::string& name)
    {
        if (name == "q")
            mStack.push_back(mState);
        else if (name == "Q" && !mStack.empty()) {
            mState = mStack.back();
            mStack.pop_back();
        } else if (name == "cm" && mOperands.size() == 6)
            mState.matrix = GetMatrix(QPDFObjectHandle::newArray(mOperands)) * mState.matrix;
        else if (name == "Do")
            Show(FindResource("/XObject"));
        else if (name == "gs")
            mState.isTransparent = IsTransparentState(FindResource("/ExtGState"), mState.isTransparent);
        else if (mState.isTransparent && cPainters.count(name) > 0)
            Add(PdfFinding::Kind::Transparency, mPlaced);
        else if (name == "Tf")
            UseFont(mOperands.empty() ? QPDFObjectHandle() : FindResource("/Font", mOperands.front()));
        else
            UseColor(name);
    }

    void UseColor(const std::string& name)
    {
        if (name == "rg" || name == "RG")
            Add(PdfFinding::Kind::DeviceRgb, mPlaced);
        else if ((name == "cs" || name == "CS") && !mOperands.empty())
            UseSpace(mOperands.back(), mPlaced);
        else if (name == "sh") {
            QPDFObjectHandle shading = FindResource("/Shading");
            if (shading.isStream())
                shading = shading.getDict();
            UseSpace(shading.isDictionary() ? shading.getKey("/ColorSpace") : shading, mPlaced);
        }
    }

    void UseSpace(QPDFObjectHandle space, const QRectF& box)
    {
        QPDFObjectHandle spaces = mResources.isDictionary() ? mResources.getKey("/ColorSpace") : mResources;
        for (const auto kind : {PdfFinding::Kind::DeviceRgb, PdfFinding::Kind::TaggedColor}) {
            if (IsColorOf(kind, space, spaces))
                Add(kind, box);
        }
    }

    void UseFont(QPDFObjectHandle font)
    {
        const bool isInside = !font.isDictionary() || IsFontInside(font);
        const QString name = font.isDictionary() ? GetFontName(font) : QString();
        if (!name.isEmpty())
            mScan.mFonts.insert(name, isInside);
        if (!isInside)
            Add(PdfFinding::Kind::FontNotInside, mPlaced, name);
    }

    void Show(QPDFObjectHandle shown)
    {
        if (!shown.isStream())
            return;
        if (IsName(shown.getDict().getKey("/Subtype"), "/Image"))
            ShowImage(shown);
        else if (mDepth < cDeepestForm && ++mScan.mFormCount < cMostForms) {
            PdfContentReader inner(*this, shown);
            QPDFPageObjectHelper(shown).parseContents(&inner);
        }
    }

    void ShowImage(QPDFObjectHandle image)
    {
        QPDFObjectHandle dictionary = image.getDict();
        const QTransform& matrix = mState.matrix;
        const QRectF box = matrix.mapRect(QRectF(0, 0, 1, 1));
        constexpr double cPointsPerInch = 72;
        const double across = std::hypot(matrix.m11(), matrix.m12()) / cPointsPerInch;
        const double down = std::hypot(matrix.m21(), matrix.m22()) / cPointsPerInch;
        const double resolution = across > 0 && down > 0
                                      ? std::min(GetNumber(dictionary, "/Width", 0) / across,
                                                 GetNumber(dictionary, "/Height", 0) / down)
                                      : 0;
        const auto [place, isNew] =
            mScan.mImages.insert({image.getObjGen(), {image, mPage, box, resolution, mDepth > 0}});
        place->second.resolution = std::min(place->second.resolution, resolution);
        UseSpace(dictionary.getKey("/ColorSpace"), box);
        if (mState.isTransparent || (isNew && PdfScan::IsHalfTransparent(image)))
            Add(PdfFinding::Kind::Transparency, box);
    }

    QPDFObjectHandle FindResource(const char* category) const
    {
        return mOperands.empty() ? QPDFObjectHandle::newNull() : FindResource(category, mOperands.back());
    }

    QPDFObjectHandle FindResource(const char* category, QPDFObjectHandle name) const
    {
        QPDFObjectHandle resources = mResources;
        QPDFObjectHandle group = resources.isDictionary() ? resources.getKey(category) : resources;
        QPDFObjectHandle found = group.isDictionary() && name.isName() ? group.getKey(name.getName())
                                                                       : QPDFObjectHandle::newNull();
        const bool isState = std::string(category) == "/ExtGState";
        return isState && !found.isDictionary() ? QPDFObjectHandle::newDictionary() : found;
    }

    void Add(PdfFinding::Kind kind, const QRectF& box, const QString& name = QString())
    {
        mScan.Add({kind, mPage, box, mDepth > 0, name});
    }

    PdfScan& mScan;
    int mPage;
    QPDFObjectHandle mResources;
    State mState;
    QRectF mPlaced;  // the form on the page that this content belongs to
    int mDepth = 0;
    std::vector<State> mStack;
    std::vector<QPDFObjectHandle> mOperands;
};

PdfScan::PdfScan(QPDF& pdf)
{
    int number = 0;
    for (QPDFPageObjectHelper& page : QPDFPageDocumentHelper(pdf).getAllPages()) {
        const QRectF trim = GetBox(page.getTrimBox());
        const QTransform toPage(1, 0, 0, -1, -trim.left(), trim.bottom());  // the top, as y grows upwards
        PdfContentReader reader(*this, number++, page.getAttribute("/Resources", false), toPage);
        page.parseContents(&reader);
    }
}

void PdfScan::Add(const PdfFinding& finding)
{
    const bool isKnown = std::any_of(mFindings.rbegin(), mFindings.rend(), [&](const PdfFinding& known) {
        return known.kind == finding.kind && known.page == finding.page && known.box == finding.box &&
               known.name == finding.name;
    });
    if (!isKnown)
        mFindings.push_back(finding);
}

bool PdfScan::IsHalfTransparent(QPDFObjectHandle image)
{
    QPDFObjectHandle mask = image.getDict().getKey("/SMask");
    if (!mask.isStream())
        return false;
    const auto samples = mask.getStreamData(qpdf_dl_all);
    const unsigned char* const begin = samples->getBuffer();
    return std::any_of(begin, begin + samples->getSize(),
                       [](unsigned char sample) { return sample != 0 && sample != 0xFF; });
}
