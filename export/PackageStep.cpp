#include "export/PackageStep.h"

#include "export/ProducedOutput.h"
#include "plugin/host/IPackage.h"
#include "plugin/messages/MessageCodes.h"

namespace
{
// In the order in which the command is told them.
constexpr std::pair<PackageSetting, bool> cSettings[] = {{PackageSetting::Fonts, true},
                                                         {PackageSetting::Links, true},
                                                         {PackageSetting::Profiles, true},
                                                         {PackageSetting::UpdateGraphics, false},
                                                         {PackageSetting::HiddenLayers, false},
                                                         {PackageSetting::DocumentHyphenationOnly, false},
                                                         {PackageSetting::IgnorePreflightErrors, true},
                                                         {PackageSetting::Report, false}};
static_assert(std::size(cSettings) == cPackageSettingCount);
}  // namespace

bool PackageStep::MakePackage(IPackageCommand& command, const GString& name)
{
    command.SetTargetFolder(ReserveOutput(name + QStringLiteral(" Folder"), ReservedOutput::Kind::Folder));
    for (const auto& [setting, isOn] : cSettings)
        command.SetSetting(setting, isOn);
    if (command.Execute() != cSuccess || !ProducedOutput::IsFilledFolder(GetReservedPath()))
        return Fail(PlugInMessage::cPackageFailed);
    KeepOutput();
    return true;
}
