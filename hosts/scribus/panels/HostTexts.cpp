#include "hosts/scribus/panels/HostTexts.h"

#include <QCoreApplication>
#include <QDir>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

// In a function outside of every namespace, as Qt wants it.
static void BringInTexts()
{
    Q_INIT_RESOURCE(HostTexts);
}

void HostTexts::Load(const QLocale& locale)
{
    BringInTexts();
    // One translation serves all countries of a language.
    const QString language = locale.name().section(QLatin1Char('_'), 0, 0);
    const QStringList texts =
        QDir(QStringLiteral(":/texts")).entryList({QStringLiteral("Host_%1??.qm").arg(language)});
    if (texts.isEmpty())
        return;
    // The buttons of Qt's own windows, where the system has their texts.
    auto* ofQt = new QTranslator(QCoreApplication::instance());
    const QString folder = QLibraryInfo::location(QLibraryInfo::TranslationsPath);
    if (ofQt->load(locale, QStringLiteral("qtbase"), QStringLiteral("_"), folder))
        QCoreApplication::installTranslator(ofQt);
    auto* own = new QTranslator(QCoreApplication::instance());
    if (own->load(QStringLiteral(":/texts/") + texts.first()))
        QCoreApplication::installTranslator(own);
}
