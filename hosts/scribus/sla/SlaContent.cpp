#include "hosts/scribus/sla/SlaContent.h"

#include "hosts/scribus/sla/SlaInks.h"
#include "hosts/scribus/sla/SlaScanner.h"

#include <QDir>
#include <QFileInfo>
#include <QMap>
#include <QSet>
#include <QTransform>

namespace
{
constexpr int cRenderFrame = 9;  // a frame whose image is made anew from its own text

QString MakeRoman(int number)
{
    static const struct
    {
        int value;
        const char* digits;
    } cDigits[] = {{1000, "m"}, {900, "cm"}, {500, "d"}, {400, "cd"}, {100, "c"}, {90, "xc"}, {50, "l"},
                   {40, "xl"},  {10, "x"},   {9, "ix"},  {5, "v"},    {4, "iv"},  {1, "i"}};
    constexpr int cLargestRoman = 100000;
    QString text;
    for (const auto& digit : cDigits) {
        for (; number >= digit.value && number < cLargestRoman; number -= digit.value)
            text += QLatin1String(digit.digits);
    }
    return text;
}

QString MakeLetters(int number)
{
    QString text;
    for (; number > 0; number = (number - 1) / 26)
        text.prepend(QLatin1Char(static_cast<char>('a' + (number - 1) % 26)));
    return text;
}

QString MakeNumber(const QString& type, int number)
{
    if (type == QLatin1String("Type_i_ii_iii"))
        return MakeRoman(number);
    if (type == QLatin1String("Type_I_II_III"))
        return MakeRoman(number).toUpper();
    if (type == QLatin1String("Type_a_b_c"))
        return MakeLetters(number);
    if (type == QLatin1String("Type_A_B_C"))
        return MakeLetters(number).toUpper();
    return type == QLatin1String("Type_None") ? QString() : QString::number(number);
}

// A whole number, or the bound that it is beyond; a number such as 1e99 is in no integer's range.
int GetBoundedNumber(const SlaScanner& element, const char* attribute, int least, int most)
{
    return static_cast<int>(qBound<double>(least, element.GetNumber(attribute), most));
}

// Numbers the pages of one section. Its pages are given by indexes from 0.
void NumberPages(const SlaScanner& section, QVector<DocumentPage>& pages)
{
    const int from = GetBoundedNumber(section, "From", 0, pages.size());
    const int to = GetBoundedNumber(section, "To", -1, pages.size() - 1);
    const int start = GetBoundedNumber(section, "Start", 0, 1000000);
    const bool isReversed = section.GetNumber("Reversed") != 0;
    if (section.GetNumber("Active") == 0)
        return;
    for (int index = from; index <= to; ++index) {
        const int place = isReversed ? to - index : index - from;
        pages[index].number = MakeNumber(section.GetText("Type"), start + place);
    }
}

// The area of a frame on a page of which `origin` is the top left corner.
QRectF GetBox(const SlaScanner& frame, const QPointF& origin)
{
    QTransform turn;
    turn.translate(frame.GetNumber("XPOS") - origin.x(), frame.GetNumber("YPOS") - origin.y());
    turn.rotate(frame.GetNumber("ROT"));
    return turn.mapRect(QRectF(0, 0, frame.GetNumber("WIDTH"), frame.GetNumber("HEIGHT")));
}

// What a document says of its canvas before it says what is on it.
struct Canvas
{
    QVector<QPointF> pages;              // their top left corners
    QMap<QString, QPointF> masterPages;  // the same, by name
    QSet<QString> silentLayers;          // that are not printed, by number

    void Read(const SlaScanner& element, DocumentInfo& info)
    {
        const QPointF origin(element.GetNumber("PAGEXPOS"), element.GetNumber("PAGEYPOS"));
        if (element.GetName() == "PAGE") {
            if (pages.size() < info.pages.size())
                info.pages[pages.size()].masterPage = element.GetText("MNAM");
            pages.append(origin);
        } else if (element.GetName() == "MASTERPAGE") {
            masterPages.insert(element.GetText("NAM"), origin);
        } else if (element.GetName() == "LAYERS" && element.GetText("DRUCKEN") == QLatin1String("0")) {
            silentLayers.insert(element.GetText("NUMMER"));
        }
    }
};

DocumentImage ReadImage(const SlaScanner& frame, const Canvas& canvas, const QString& path)
{
    constexpr double cPointsPerInch = 72;
    DocumentImage image;
    image.path = path;
    const bool isOnPage = frame.GetName() == "PAGEOBJECT" && frame.Has("OwnPage");
    const int page = isOnPage ? GetBoundedNumber(frame, "OwnPage", -1, canvas.pages.size()) : -1;
    image.page = page < canvas.pages.size() ? page : -1;
    image.masterPage = frame.GetText("OnMasterPage");
    image.box =
        GetBox(frame, image.page < 0 ? canvas.masterPages.value(image.masterPage) : canvas.pages[image.page]);
    image.isPrinted = frame.GetText("PRINTABLE") != QLatin1String("0") &&
                      !canvas.silentLayers.contains(frame.GetText("LAYER"));
    const double scale = qMin(frame.GetNumber("LOCALSCX"), frame.GetNumber("LOCALSCY"));
    image.resolution = scale > 0 ? cPointsPerInch / scale : 0;
    return image;
}

void ReadDocumentElement(const SlaScanner& element, DocumentInfo& info)
{
    info.title = element.GetText("TITLE");
    info.managesColors = element.GetNumber("HCMS") != 0 && element.GetNumber("DPuse") != 0;
    info.hasFacingPages = element.GetNumber("BOOK") != 0;
    info.bleed = {element.GetNumber("BleedTop"), element.GetNumber("BleedBottom"),
                  element.GetNumber("BleedLeft"), element.GetNumber("BleedRight")};
}
}  // namespace

std::vector<std::string_view> SlaContent::GetLinkAttributes(const SlaScanner& element)
{
    if (!element.Has("PFILE") || element.GetNumber("isInlineImage") != 0 ||
        element.GetNumber("PTYPE") == cRenderFrame)
        return {};
    return {"PFILE", "PFILE2", "PFILE3"};
}

std::vector<std::string_view> SlaContent::GetProfileAttributes(const SlaScanner& element)
{
    if (element.GetName() == "DOCUMENT" && element.GetNumber("HCMS") != 0)
        return {"DPPr", "DPIn", "DPInCMYK", "DPIn2", "DPIn3"};
    // An image's own profile goes before the one that is chosen for it.
    if (element.Has("PTYPE") && !element.GetText("PFILE").isEmpty() && element.GetNumber("EMBEDDED") == 0)
        return {"PRFILE"};
    return {};
}

QStringList SlaContent::FindProfiles(const QByteArray& text)
{
    QStringList profiles;
    bool isManaged = false;  // where colours are not managed, no profile is used
    SlaScanner element({text.constData(), static_cast<size_t>(text.size())});
    while (element.Next()) {
        isManaged = isManaged || (element.GetName() == "DOCUMENT" && element.GetNumber("HCMS") != 0);
        for (const std::string_view attribute : GetProfileAttributes(element)) {
            if (isManaged)
                profiles.append(element.GetText(attribute));
        }
    }
    profiles.removeAll(QString());
    return profiles;
}

void SlaContent::Read(const QByteArray& text, const QString& folder, DocumentInfo& info)
{
    QSet<QString> colors;
    QMap<QString, bool> links;
    Canvas canvas;
    SlaScanner element({text.constData(), static_cast<size_t>(text.size())});
    while (element.Next()) {
        const std::string_view name = element.GetName();
        if (name == "DOCUMENT")
            ReadDocumentElement(element, info);
        else if (name == "COLOR")
            colors.insert(element.GetText("NAME"));
        else if (name == "Section")
            NumberPages(element, info.pages);
        else
            canvas.Read(element, info);
        for (const std::string_view attribute : GetLinkAttributes(element)) {
            const QString path = element.GetText(attribute);
            const QString absolute = QDir::cleanPath(QDir(folder).absoluteFilePath(path));
            if (!path.isEmpty())
                links.insert(absolute, true);
            if (!path.isEmpty() && attribute == "PFILE")
                info.images.append(ReadImage(element, canvas, absolute));
        }
    }
    const QStringList named = FindProfiles(text);
    const QSet<QString> profiles(named.begin(), named.end());
    for (const QString& path : links.keys())
        info.links.append({path, !QFileInfo(path).isFile()});
    info.colors = colors.values();
    info.colors.sort();
    info.inks = SlaInks::Find(text);
    info.profiles = profiles.values();
    info.profiles.sort();
    for (int i = 0; i < info.pages.size(); ++i) {
        if (info.pages[i].number.isEmpty())
            info.pages[i].number = QString::number(i + 1);
    }
}
