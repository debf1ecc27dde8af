#include "widgets/GCUSTranslation.h"

#include <QCoreApplication>
#include <QTranslator>

#include <memory>

static std::unique_ptr<QTranslator> translator;

bool GCUSTranslation::Load(const GPathName& file)
{
    Unload();
    auto loaded = std::make_unique<QTranslator>();
    if (QCoreApplication::instance() == nullptr || !loaded->load(file.GetNativePath()) ||
        !QCoreApplication::installTranslator(loaded.get()))
        return false;
    translator = std::move(loaded);
    return true;
}

void GCUSTranslation::Unload()
{
    translator.reset();  // its end takes it out of the application
}

GString GCUSTranslation::Translate(const char* context, const char* text)
{
    return QCoreApplication::translate(context, text);
}
