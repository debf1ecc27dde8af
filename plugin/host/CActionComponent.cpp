#include "plugin/host/CActionComponent.h"

CActionComponent::~CActionComponent() = default;

void CActionComponent::DoAction(IActiveContext*, ActionID, IHostObject*) {}

void CActionComponent::UpdateActionStates(IActiveContext*, IActionStateList&) {}

ExportResult CActionComponent::Export(ActionID, const ExportChoices&, PMString&)
{
    return ExportResult::Unsupported;
}
