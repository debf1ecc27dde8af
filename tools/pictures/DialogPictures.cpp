#include "FramedPicture.h"

#include "ExportRun.h"
#include "export/dialog/GCSPUSaveAsStamplexPDFDialog.h"
#include "foundation/core/GUnitSupport.h"
#include "hopbox/HopboxRegistry.h"
#include "widgets/GCUSTranslation.h"
#include "widgets/GQUICollapsibleFrame.h"
#include "widgets/GQUIUnitSpinBox.h"

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QRadioButton>
#include <QStyle>
#include <QStyleFactory>
#include <QToolButton>

// Draws the selection dialog in its states, each as a PNG in the folder that the command line names.
// usage: dialog_pictures FOLDER [NAME…]

namespace
{
using Registration = void (*)();
using Preparation = void (*)(QWidget& dialog);

struct Picture
{
    const char* name;
    const char* language;  // empty for English
    DialogOptions options;
    Registration makeHopboxes;
    bool isDark;
    Preparation prepare;
};

const DialogOptions cDocumentOptions = {{DialogOption::cSlugArea, true},
                                        {DialogOption::cSpreads, true},
                                        {DialogOption::cBleedMark, true},
                                        {DialogOption::cMarkWeight, true},
                                        {DialogOption::cFilePackage, true}};

DialogOptions GetBookOptions()
{
    DialogOptions options = cDocumentOptions;
    options[DialogOption::cPageRange] = false;
    return options;
}

void MakeNone() {}

void Leave(QWidget&) {}

void OpenOptions(QWidget& dialog)
{
    dialog.findChild<GQUICollapsibleFrame*>()->findChild<QToolButton*>()->click();
}

void HoldAlt(QWidget& dialog)
{
    QKeyEvent press(QEvent::KeyPress, Qt::Key_Alt, Qt::AltModifier);
    QApplication::sendEvent(&dialog, &press);
}

void TypeLength(QWidget& dialog, const char* text)
{
    OpenOptions(dialog);
    auto* field = dialog.findChildren<GQUIUnitSpinBox*>().at(1);
    field->setFocus();
    field->GetTextField()->setText(QLatin1String(text));
}

void TypeNoLength(QWidget& dialog)
{
    TypeLength(dialog, "4 m");
}

void TypeTooLong(QWidget& dialog)
{
    TypeLength(dialog, "599");
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(dialog.focusWidget(), &enter);
}

void TypeRange(QWidget& dialog, const char* text)
{
    dialog.findChildren<QRadioButton*>().at(1)->click();
    dialog.findChild<QLineEdit*>(QString(), Qt::FindDirectChildrenOnly)->setText(QLatin1String(text));
}

void TypeHalfARange(QWidget& dialog)
{
    TypeRange(dialog, "1-5,8,");
}

void TypeNoPages(QWidget& dialog)
{
    TypeRange(dialog, "1-999");
}

void Select(QWidget& dialog, const char* text)
{
    auto* list = dialog.findChild<QComboBox*>();
    list->setCurrentIndex(list->findText(QLatin1String(text)));
}

void SelectFixedSetting(QWidget& dialog)
{
    Select(dialog, "Proof, low resolution");
}

void OpenUnsetOptions(QWidget& dialog)
{
    Select(dialog, "Newspaper 26v5");
    OpenOptions(dialog);
}

void OpenList(QWidget& dialog)
{
    dialog.findChild<QComboBox*>()->showPopup();
}

QPalette GetDarkPalette()
{
    QPalette palette(QColor(50, 50, 53));
    palette.setColor(QPalette::Base, QColor(35, 35, 38));
    palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, Qt::gray);
    return palette;
}

// A picture without what it is to show would be worse than none.
void Demand(bool isMade)
{
    if (!isMade)
        qFatal("What the picture shows can't be made.");
}

void ChangeHopbox(const GString& name, const QString& pdfSettings)
{
    Demand(HopboxRegistry().ChangeEntry(
        name, [&](HopboxRegistryEntry& entry) { entry.pdfSettings = pdfSettings; }));
}

void MakeHopboxes()
{
    const struct
    {
        const char* name;
        const char* pdfSettings;
        const char* settings;
    } hopboxes[] = {
        {"Print shop", "Magazine, coated 39L",
         "UserSettings=true IncludeFilePackage=true PrinterMarks=true Trim=true Bleed=true "
         "PrinterRegistration=true ColorBars=true PageInfo=false MarkWeight=1 MarkOffset=8.504 BleedChoice=1 "
         "BleedTopValue=8.504 BleedBottomValue=8.504 BleedInsideValue=8.504 BleedOutsideValue=8.504"},
        {"Proofs", "Proof, low resolution", "UserSettings=false"},
        {"Newspaper", "Newspaper 26v5", "UserSettings=true"},
    };
    for (const auto& hopbox : hopboxes) {
        const GString name = QString::fromLatin1(hopbox.name);
        MakeHopbox(name, QString::fromLatin1(hopbox.settings).split(QLatin1Char(' ')));
        ChangeHopbox(name, QString::fromLatin1(hopbox.pdfSettings));
    }
}

void MakeOneWithALongName()
{
    MakeHopbox(QStringLiteral("Gravure"), {QStringLiteral("UserSettings=true")});
    ChangeHopbox(QStringLiteral("Gravure"),
                 QStringLiteral("Gravure on thin coated paper, 150 lines per inch, hall 3 beside the river, "
                                "night shift"));
    MakeHopboxes();
}

void MakeAThousand()
{
    const GString key = MakeHopbox(QStringLiteral("Press"), {QStringLiteral("UserSettings=true")});
    HopboxRegistry registry;
    HopboxRegistryEntry entry;
    Demand(registry.GetEntry(key, entry));
    for (int number = 1; number <= 999; ++number) {
        entry.pdfSettings = QStringLiteral("Settings of press %1").arg(number, 3, 10, QLatin1Char('0'));
        Demand(registry.AddEntry(QStringLiteral("Press %1").arg(number), entry));
    }
}

void SetLanguage(const QString& language)
{
    QLocale::setDefault(QLocale(language.left(2)));
    if (language.isEmpty())
        GCUSTranslation::Unload();
    else
        Demand(GCUSTranslation::Load(
            GPathName(QStringLiteral(HOPBOX_TRANSLATIONS "/Plugin_%1.qm").arg(language))));
}

// The dialog with its open list.
QImage DrawWithPopup(QWidget& dialog)
{
    const QImage picture = DrawFramed(dialog, dialog.windowTitle());
    QWidget* popup = QApplication::activePopupWidget();
    if (popup == nullptr)
        return picture;
    const QPoint place = popup->pos() - dialog.geometry().topLeft() + QPoint(1, cTitleHeight);
    const QRect whole = picture.rect() | QRect(place, popup->size() + QSize(0, 1));
    QImage both(whole.size(), picture.format());
    both.fill(Qt::white);
    QPainter painter(&both);
    painter.translate(-whole.topLeft());
    painter.drawImage(0, 0, picture);
    painter.drawPixmap(place, popup->grab());
    return both;
}

bool Save(const Picture& picture, const QString& folder)
{
    SetLanguage(QLatin1String(picture.language));
    QApplication::setPalette(picture.isDark ? GetDarkPalette() : QApplication::style()->standardPalette());
    HopboxRegistry().Clear();
    picture.makeHopboxes();

    ExportParty party;
    GCPTSaveAsTool tool(party.action, picture.options);
    GCSPUSaveAsStamplexPDFDialog dialog(nullptr, tool);
    dialog.show();
    QApplication::processEvents();
    picture.prepare(dialog);
    QApplication::processEvents();
    return DrawWithPopup(dialog).save(QStringLiteral("%1/%2.png").arg(folder, QLatin1String(picture.name)));
}
}  // namespace

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2)
        return 2;
    const Sandbox sandbox;
    const PlugInStore store;
    GUnitSupport::SetDefaultUnitCode(GUnitSupport::cMillimetres);

    const DialogOptions book = GetBookOptions();
    const Picture pictures[] = {
        {"dialog", "", cDocumentOptions, MakeHopboxes, false, Leave},
        {"dialog-options", "", cDocumentOptions, MakeHopboxes, false, OpenOptions},
        {"dialog-unset", "", cDocumentOptions, MakeHopboxes, false, OpenUnsetOptions},
        {"dialog-fixed", "", cDocumentOptions, MakeHopboxes, false, SelectFixedSetting},
        {"dialog-remove", "", cDocumentOptions, MakeHopboxes, false, HoldAlt},
        {"dialog-empty", "", cDocumentOptions, MakeNone, false, Leave},
        {"dialog-no-options", "", {}, MakeHopboxes, false, OpenOptions},
        {"dialog-book", "", book, MakeHopboxes, false, Leave},
        {"dialog-book-options", "", book, MakeHopboxes, false, OpenOptions},
        {"dialog-german", "deDE", cDocumentOptions, MakeHopboxes, false, OpenOptions},
        {"dialog-german-remove", "deDE", cDocumentOptions, MakeHopboxes, false, HoldAlt},
        {"dialog-french", "frFR", cDocumentOptions, MakeHopboxes, false, OpenOptions},
        {"dialog-french-remove", "frFR", cDocumentOptions, MakeHopboxes, false, HoldAlt},
        {"dialog-dark", "", cDocumentOptions, MakeHopboxes, true, OpenOptions},
        {"dialog-dark-remove", "", cDocumentOptions, MakeHopboxes, true, HoldAlt},
        {"dialog-dark-unset", "", cDocumentOptions, MakeHopboxes, true, OpenUnsetOptions},
        {"dialog-dark-no-length", "", cDocumentOptions, MakeHopboxes, true, TypeNoLength},
        {"dialog-no-length", "", cDocumentOptions, MakeHopboxes, false, TypeNoLength},
        {"dialog-no-length-german", "deDE", cDocumentOptions, MakeHopboxes, false, TypeNoLength},
        {"dialog-too-long", "", cDocumentOptions, MakeHopboxes, false, TypeTooLong},
        {"dialog-too-long-french", "frFR", cDocumentOptions, MakeHopboxes, false, TypeTooLong},
        {"dialog-range", "", cDocumentOptions, MakeHopboxes, false, TypeHalfARange},
        {"dialog-no-pages", "", cDocumentOptions, MakeHopboxes, false, TypeNoPages},
        {"dialog-no-pages-german", "deDE", cDocumentOptions, MakeHopboxes, false, TypeNoPages},
        {"dialog-no-pages-french", "frFR", cDocumentOptions, MakeHopboxes, false, TypeNoPages},
        {"dialog-long-name", "", cDocumentOptions, MakeOneWithALongName, false, Leave},
        {"dialog-long-name-list", "", cDocumentOptions, MakeOneWithALongName, false, OpenList},
        {"dialog-thousand", "", cDocumentOptions, MakeAThousand, false, OpenList},
        {"dialog-2x", "", cDocumentOptions, MakeHopboxes, false, OpenOptions},
    };
    bool isSaved = true;
    for (const Picture& picture : pictures) {
        if (arguments.size() == 2 || arguments.contains(QLatin1String(picture.name)))
            isSaved = Save(picture, arguments.at(1)) && isSaved;
    }
    return isSaved ? 0 : 1;
}
