#include "export/GCPTAbstractAction.h"

#include "widgets/GCUSTranslation.h"

GCPTAbstractAction::GCPTAbstractAction()
    : mMenuName(GCUSTranslation::Translate("GCPTAbstractAction", "Export to Hopbox...")),
      mTitle(GCUSTranslation::Translate("GCPTAbstractAction", "Export to Hopbox"))
{
}

GCPTAbstractAction::~GCPTAbstractAction() = default;
