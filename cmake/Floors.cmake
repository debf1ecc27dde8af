# Which folder may use which: the one table behind docs/architecture.md. Floor 1 is first; a folder
# names only folders that stand above it in this list, so no two can use each other. What is on floor 2 and
# shows windows is named by those alone that show some.
set(floor_1 foundation/core foundation/trace foundation/system)
set(windows widgets/values widgets)
set(floor_2 plugin/host foundation/cli foundation/prefs foundation/strings foundation/files foundation/ipc)
set(floor_3 plugin/boundary plugin/messages archive archive/mac foundation/startup)
set(floor_4 hopbox joboptions)

set(may_use_foundation_core)
set(may_use_foundation_trace foundation/core)
set(may_use_foundation_system foundation/core foundation/trace)

set(may_use_widgets_values foundation/core)
set(may_use_widgets foundation/core widgets/values)
set(may_use_plugin_host foundation/core foundation/trace)
set(may_use_foundation_cli ${floor_1})
set(may_use_foundation_prefs ${floor_1})
set(may_use_foundation_strings ${floor_1})
set(may_use_foundation_files ${floor_1})
set(may_use_foundation_ipc ${floor_1})

set(may_use_plugin_boundary foundation/core foundation/trace plugin/host)
set(may_use_plugin_messages ${floor_1} ${floor_2} ${windows})
set(may_use_archive ${floor_1} ${floor_2})
set(may_use_archive_mac ${floor_1} ${floor_2})
set(may_use_foundation_startup ${floor_1} ${floor_2})

set(may_use_hopbox ${floor_1} ${floor_2} ${floor_3})
set(may_use_joboptions ${floor_1})
set(may_use_export ${floor_1} ${floor_2} ${windows} ${floor_3} ${floor_4})
set(may_use_export_dialog ${may_use_export} export)
set(may_use_plugin_shell ${may_use_export_dialog} export/dialog)

# The Scribus engine, room by room: no window, no command line. Then what stands on it, each apart from the
# others. None of them links the plug-in.
set(engine ${floor_1} plugin/host plugin/boundary foundation/prefs foundation/strings foundation/files foundation/ipc
  foundation/startup)
set(may_use_hosts_scribus_runner ${floor_1})
set(may_use_hosts_scribus_sla ${floor_1})
set(may_use_hosts_scribus_books ${floor_1})
set(may_use_hosts_scribus_documents ${floor_1} hosts/scribus/runner hosts/scribus/sla)
set(may_use_hosts_scribus_packages ${may_use_hosts_scribus_documents} hosts/scribus/documents)
set(may_use_hosts_scribus_pdffile ${floor_1})
set(may_use_hosts_scribus_pdf ${may_use_hosts_scribus_packages} joboptions hosts/scribus/pdffile)
list(APPEND engine joboptions hosts/scribus/runner hosts/scribus/sla hosts/scribus/books hosts/scribus/documents
  hosts/scribus/packages hosts/scribus/pdffile hosts/scribus/pdf)
set(may_use_hosts_scribus_host ${engine})
list(APPEND engine hosts/scribus/host)
set(may_use_hosts_scribus_panels ${engine} ${windows})
set(may_use_hosts_layout_host_window ${may_use_hosts_scribus_panels} hosts/scribus/panels)
set(may_use_hosts_layout_host_commandline ${engine} foundation/cli)
set(may_use_hosts_layout_host ${may_use_hosts_layout_host_window} foundation/cli hosts/layout_host/window
  hosts/layout_host/commandline)

# The helper of an application that has scripts only.
set(may_use_hosts_indesign_bridge ${floor_1} plugin/host plugin/boundary joboptions)
set(may_use_hosts_indesign ${may_use_hosts_indesign_bridge} foundation/cli hosts/indesign/bridge)

set(may_use_apps_hopboxctl ${floor_1} widgets/values ${floor_2} ${floor_3} ${floor_4})
set(may_use_apps_printer_processor_inbox ${floor_1})
set(may_use_apps_printer_processor ${floor_1} ${floor_2} ${floor_3} hopbox apps/printer_processor/inbox)
set(may_use_apps_host_check ${floor_1} foundation/cli foundation/prefs foundation/strings foundation/files foundation/ipc
  plugin/host plugin/boundary archive hopbox)
