# What `cmake --install` lays out, by component:
#
#     runtime   the module in a folder of its own with its texts, the tools, the receiving process, on Linux
#               layout-host, which has its script and its texts in itself, and on Windows, beside the module,
#               the helper and the start-up script for InDesign
#     sdk       what an adaptor is built with: headers, the import library, the CMake package
#
# Nothing in it names the place where it was installed.
include(CMakePackageConfigHelpers)
include(GNUInstallDirs)

set(module_folder "${CMAKE_INSTALL_LIBDIR}/hopbox")
set(package_folder "${CMAKE_INSTALL_LIBDIR}/cmake/HopboxExport")

install(TARGETS hopbox_plugin
  LIBRARY DESTINATION "${module_folder}" COMPONENT runtime
  RUNTIME DESTINATION "${module_folder}" COMPONENT runtime
  ARCHIVE DESTINATION "${module_folder}" COMPONENT sdk)
install(DIRECTORY Resources/Strings
  DESTINATION "${module_folder}/Resources" COMPONENT runtime
  FILES_MATCHING PATTERN "*.LNG")
install(DIRECTORY "${translations_folder}/"
  DESTINATION "${module_folder}/Resources/Strings" COMPONENT runtime
  FILES_MATCHING PATTERN "*.qm")
set(programs apps_hopboxctl apps_printer_processor)
if(TARGET hosts_layout_host)
  list(APPEND programs hosts_layout_host)
endif()
install(TARGETS ${programs}
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT runtime)

if(WIN32)
  install(TARGETS hosts_indesign
    RUNTIME DESTINATION "${module_folder}" COMPONENT runtime)
  install(FILES hosts/indesign/script/hopbox.jsx
    DESTINATION "${module_folder}" COMPONENT runtime)
endif()

install(FILES plugin/boundary/hopbox_host.h plugin/boundary/hopbox_adaptor.h
  DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/hopbox" COMPONENT sdk)
install(TARGETS apps_host_check
  RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT sdk)

set(header_folder "${CMAKE_INSTALL_INCLUDEDIR}/hopbox")
set(module_file "${module_folder}/$<TARGET_FILE_NAME:hopbox_plugin>")
set(import_file "${module_folder}/$<TARGET_LINKER_FILE_NAME:hopbox_plugin>")
set(check_file "${CMAKE_INSTALL_BINDIR}/hopbox-host-check${CMAKE_EXECUTABLE_SUFFIX}")
configure_package_config_file(cmake/HopboxExportConfig.cmake.in "${CMAKE_BINARY_DIR}/package/Config.in"
  INSTALL_DESTINATION "${package_folder}" NO_SET_AND_CHECK_MACRO)
file(GENERATE OUTPUT "${CMAKE_BINARY_DIR}/package/HopboxExportConfig.cmake" INPUT "${CMAKE_BINARY_DIR}/package/Config.in")
write_basic_package_version_file("${CMAKE_BINARY_DIR}/package/HopboxExportConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES
  "${CMAKE_BINARY_DIR}/package/HopboxExportConfig.cmake"
  "${CMAKE_BINARY_DIR}/package/HopboxExportConfigVersion.cmake"
  DESTINATION "${package_folder}" COMPONENT sdk)
