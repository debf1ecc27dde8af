# The target `translations` builds Plugin_deDE.qm, Host_deDE.qm and their like into the folder `translations` of the build.
find_program(LRELEASE_PROGRAM NAMES lrelease-qt5 lrelease HINTS /usr/lib/qt5/bin REQUIRED)
set(translations_folder "${CMAKE_BINARY_DIR}/translations")
file(MAKE_DIRECTORY "${translations_folder}")
set(compiled_translations)
set(host_text_lines)  # those of the windows of the Scribus host, as lines of a resource
file(GLOB translation_sources CONFIGURE_DEPENDS "${CMAKE_SOURCE_DIR}/Resources/Translations/*.ts")
foreach(source IN LISTS translation_sources)
  get_filename_component(name "${source}" NAME_WE)
  set(compiled "${translations_folder}/${name}.qm")
  add_custom_command(OUTPUT "${compiled}"
    COMMAND "${LRELEASE_PROGRAM}" -silent "${source}" -qm "${compiled}"
    DEPENDS "${source}" VERBATIM)
  list(APPEND compiled_translations "${compiled}")
  if(name MATCHES "^Host_")
    string(APPEND host_text_lines "    <file alias=\"${name}.qm\">${compiled}</file>\n")
  endif()
endforeach()
add_custom_target(translations DEPENDS ${compiled_translations})
