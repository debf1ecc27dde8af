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
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QStyle>
#include <QStyleFactory>
#include <QToolButton>

// Draws the selection dialog in its states, each as a PNG in the folder that the command line names.
// usage: dialog_pictures FOLDER [NAME…]

namespace
{
using Preparation = void (*)(QWidget& dialog);

struct Picture
{
    const char* name;
    const char* language;  // empty for English
    DialogOptions options;
    bool hasHopboxes;
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

void TypeNoLength(QWidget& dialog)
{
    OpenOptions(dialog);
    auto* field = dialog.findChildren<GQUIUnitSpinBox*>().at(1);
    field->findChild<QLineEdit*>()->setText(QStringLiteral("4 m"));
}

void SelectLongName(QWidget& dialog)
{
    const GString name(120, QLatin1Char('m'));
    MakeHopbox(name, {QStringLiteral("UserSettings=true")});
    HoldAlt(dialog);
    dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();  // the list is read again
    auto* list = dialog.findChild<QComboBox*>();
    list->setCurrentIndex(list->findText(name));
}

void SelectFixedSetting(QWidget& dialog)
{
    auto* list = dialog.findChild<QComboBox*>();
    list->setCurrentIndex(list->findText(QStringLiteral("Proof, low resolution")));
}

QPalette GetDarkPalette()
{
    QPalette palette(QColor(50, 50, 53));
    palette.setColor(QPalette::Base, QColor(35, 35, 38));
    palette.setColor(QPalette::Highlight, QColor(42, 130, 218));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
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
        HopboxRegistry().ChangeEntry(name, [&](HopboxRegistryEntry& entry) {
            entry.pdfSettings = QString::fromLatin1(hopbox.pdfSettings);
        });
    }
}

void SetLanguage(const QString& language)
{
    QLocale::setDefault(QLocale(language.left(2)));
    if (language.isEmpty())
        GCUSTranslation::Unload();
    else
        GCUSTranslation::Load(GPathName(QStringLiteral(HOPBOX_TRANSLATIONS "/Plugin_%1.qm").arg(language)));
}

bool Save(const Picture& picture, const QString& folder)
{
    SetLanguage(QLatin1String(picture.language));
    QApplication::setPalette(picture.isDark ? GetDarkPalette() : QApplication::style()->standardPalette());
    HopboxRegistry().Clear();
    if (picture.hasHopboxes)
        MakeHopboxes();

    ExportParty party;
    GCPTSaveAsTool tool(party.action, picture.options);
    GCSPUSaveAsStamplexPDFDialog dialog(nullptr, tool);
    dialog.show();
    QApplication::processEvents();
    picture.prepare(dialog);
    QApplication::processEvents();
    return DrawFramed(dialog, dialog.windowTitle())
        .save(QStringLiteral("%1/%2.png").arg(folder, QLatin1String(picture.name)));
}
}  // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("Fusion")));
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() < 2)
        return 2;
    const Sandbox sandbox;
    const PlugInStore store;
    GUnitSupport::SetDefaultUnitCode(GUnitSupport::cMillimetres);

    const Picture pictures[] = {
        {"dialog", "", cDocumentOptions, true, false, Leave},
        {"dialog-options", "", cDocumentOptions, true, false, OpenOptions},
        {"dialog-fixed", "", cDocumentOptions, true, false, SelectFixedSetting},
        {"dialog-remove", "", cDocumentOptions, true, false, HoldAlt},
        {"dialog-empty", "", cDocumentOptions, false, false, Leave},
        {"dialog-book", "", GetBookOptions(), true, false, Leave},
        {"dialog-german", "deDE", cDocumentOptions, true, false, OpenOptions},
        {"dialog-french", "frFR", cDocumentOptions, true, false, OpenOptions},
        {"dialog-dark", "", cDocumentOptions, true, true, OpenOptions},
        {"dialog-no-length", "", cDocumentOptions, true, false, TypeNoLength},
        {"dialog-no-length-german", "deDE", cDocumentOptions, true, false, TypeNoLength},
        {"dialog-long-name", "", cDocumentOptions, true, false, SelectLongName},
        {"dialog-2x", "", cDocumentOptions, true, false, OpenOptions},
    };
    bool isSaved = true;
    for (const Picture& picture : pictures) {
        if (arguments.size() == 2 || arguments.contains(QLatin1String(picture.name)))
            isSaved = Save(picture, arguments.at(1)) && isSaved;
    }
    return isSaved ? 0 : 1;
}
