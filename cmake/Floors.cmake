# Which folder may use which: the one table behind docs/architecture.md. Floor 1 is first; a folder
# names only folders that stand above it in this list, so no two can use each other.
set(floor_1 foundation/core foundation/trace foundation/system)
set(floor_2 widgets plugin/host foundation/prefs foundation/strings foundation/files foundation/ipc)
set(floor_3 plugin/messages archive archive/mac foundation/startup)

set(may_use_foundation_core)
set(may_use_foundation_trace foundation/core)
set(may_use_foundation_system foundation/core foundation/trace)

set(may_use_widgets foundation/core)
set(may_use_plugin_host foundation/core)
set(may_use_foundation_prefs ${floor_1})
set(may_use_foundation_strings ${floor_1})
set(may_use_foundation_files ${floor_1})
set(may_use_foundation_ipc ${floor_1})

set(may_use_plugin_messages ${floor_1} ${floor_2})
set(may_use_archive ${floor_1} ${floor_2})
set(may_use_archive_mac ${floor_1} ${floor_2})
set(may_use_foundation_startup ${floor_1} ${floor_2})

set(may_use_hopbox ${floor_1} ${floor_2} ${floor_3})
set(may_use_export ${floor_1} ${floor_2} ${floor_3} hopbox)
set(may_use_export_dialog ${may_use_export} export)
set(may_use_plugin_shell ${may_use_export_dialog} export/dialog)
set(may_use_hosts_scribus plugin/host ${floor_1} foundation/prefs foundation/strings foundation/files
  foundation/ipc foundation/startup)

set(may_use_apps_hopboxctl ${floor_1} ${floor_2} ${floor_3} hopbox)
set(may_use_apps_printer_processor ${floor_1} ${floor_2} ${floor_3} hopbox)
