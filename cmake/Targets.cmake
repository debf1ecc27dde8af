# One target per folder. A folder's headers are reached only through a link to its target: each target
# shows its users a folder of links to its own headers, so an include that the table of floors does not
# allow finds no file.
include(GoogleTest)

# Adds those of the named folders that are there.
function(hopbox_add_folders)
  foreach(folder IN LISTS ARGN)
    if(EXISTS "${CMAKE_CURRENT_SOURCE_DIR}/${folder}/CMakeLists.txt")
      add_subdirectory(${folder})
    endif()
  endforeach()
endfunction()

# The target name of a folder: foundation/core is foundation_core.
function(hopbox_target_name folder out)
  string(REPLACE "/" "_" name "${folder}")
  set(${out} "${name}" PARENT_SCOPE)
endfunction()

# Lays out the links to the headers of this folder and gives the include directory that shows them.
function(hopbox_show_headers target folder out)
  set(root "${CMAKE_BINARY_DIR}/include/${target}")
  file(REMOVE_RECURSE "${root}")
  file(MAKE_DIRECTORY "${root}/${folder}")
  file(GLOB headers CONFIGURE_DEPENDS RELATIVE "${CMAKE_CURRENT_SOURCE_DIR}" "${CMAKE_CURRENT_SOURCE_DIR}/*.h")
  foreach(header IN LISTS headers)
    file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}/${header}" "${root}/${folder}/${header}" SYMBOLIC)
  endforeach()
  set(${out} "${root}" PARENT_SCOPE)
endfunction()

# Links a target to the folders it uses, after a look at the table of floors: at what it names, and at what
# it gets to see through them.
function(hopbox_use target folder visibility)
  hopbox_target_name("${folder}" name)
  set(seen ${ARGN})
  foreach(used IN LISTS ARGN)
    hopbox_target_name("${used}" usedTarget)
    target_link_libraries(${target} ${visibility} ${usedTarget})
    get_target_property(through ${usedTarget} HOPBOX_SEES)
    list(APPEND seen ${through})
  endforeach()
  list(REMOVE_DUPLICATES seen)
  foreach(used IN LISTS seen)
    if(NOT used IN_LIST may_use_${name})
      message(FATAL_ERROR "${folder} may not use ${used}: see cmake/Floors.cmake")
    endif()
  endforeach()
  set_target_properties(${target} PROPERTIES HOPBOX_SEES "${seen}")
endfunction()

# hopbox_library(FOLDER foundation/core SOURCES a.cpp… [PLATFORM Stem…] [USES folder…] [LINK target…]
#                [WIN32_LINK library…] [MOC])
# PLATFORM names files that stand in two halves, Stem_posix.cpp and Stem_win32.cpp.
# LINK is for what the folder's headers show; libraries hidden behind them are linked by the folder itself.
function(hopbox_library)
  cmake_parse_arguments(PARSE_ARGV 0 arg "MOC" "FOLDER" "SOURCES;PLATFORM;USES;LINK;WIN32_LINK")
  hopbox_target_name("${arg_FOLDER}" target)
  if(WIN32)
    set(half _win32.cpp)
  else()
    set(half _posix.cpp)
  endif()
  list(TRANSFORM arg_PLATFORM APPEND ${half})
  add_library(${target} STATIC ${arg_SOURCES} ${arg_PLATFORM})
  hopbox_show_headers(${target} "${arg_FOLDER}" includeRoot)
  target_include_directories(${target} PUBLIC "${includeRoot}")
  target_link_libraries(${target} PRIVATE compiler_settings PUBLIC ${arg_LINK})
  hopbox_use(${target} "${arg_FOLDER}" PUBLIC ${arg_USES})
  if(WIN32 AND arg_WIN32_LINK)
    target_link_libraries(${target} PUBLIC ${arg_WIN32_LINK})
  endif()
  set_target_properties(${target} PROPERTIES AUTOMOC ${arg_MOC})
endfunction()

# hopbox_program(NAME image FOLDER apps/hopboxctl SOURCES… [PLATFORM Stem…] USES folder… [LINK…] [MOC])
function(hopbox_program)
  cmake_parse_arguments(PARSE_ARGV 0 arg "MOC" "NAME;FOLDER" "SOURCES;PLATFORM;USES;LINK")
  if(WIN32)
    set(half _win32.cpp)
  else()
    set(half _posix.cpp)
  endif()
  list(TRANSFORM arg_PLATFORM APPEND ${half})
  hopbox_target_name("${arg_FOLDER}" target)
  add_executable(${target} ${arg_SOURCES} ${arg_PLATFORM})
  hopbox_show_headers(${target} "${arg_FOLDER}" includeRoot)
  target_include_directories(${target} PRIVATE "${includeRoot}")
  target_link_libraries(${target} PRIVATE compiler_settings Qt5::Core ${arg_LINK})
  hopbox_use(${target} "${arg_FOLDER}" PRIVATE ${arg_USES})
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME "${arg_NAME}" AUTOMOC ${arg_MOC} RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
endfunction()

# hopbox_test(NAME foundation_core_tests SOURCES… [LABEL threaded|slow|host] [LINK target…] [NEEDS target…] [MOC])
# A test program on the common main of tests/support. LABEL `threaded`: runs under the thread sanitizer
# too; `slow`: takes more than a few seconds; `host`: nearly all its time is the host application's, which no
# sanitizer sees. NEEDS names programs that the test starts.
function(hopbox_test)
  cmake_parse_arguments(PARSE_ARGV 0 arg "MOC" "NAME;LABEL" "SOURCES;LINK;NEEDS")
  add_executable(${arg_NAME} ${arg_SOURCES})
  target_link_libraries(${arg_NAME} PRIVATE compiler_settings tests_support ${arg_LINK})
  set_target_properties(${arg_NAME} PROPERTIES
    AUTOMOC ${arg_MOC} RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
  if(arg_NEEDS)
    add_dependencies(${arg_NAME} ${arg_NEEDS})
  endif()
  if(arg_LABEL STREQUAL "threaded")
    add_dependencies(threaded_tests ${arg_NAME})
  endif()
  set(label)
  if(arg_LABEL)
    set(label LABELS ${arg_LABEL})
  endif()
  if(CMAKE_CROSSCOMPILING)
    # One start of Wine for a whole program: starting it for each case would take longer than the cases.
    add_test(NAME ${arg_NAME} COMMAND ${arg_NAME})
    set_tests_properties(${arg_NAME} PROPERTIES TIMEOUT 1200 ${label})
  else()
    gtest_discover_tests(${arg_NAME}
      TEST_PREFIX "${arg_NAME}:" DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300 ${label})
  endif()
endfunction()

# hopbox_bench(NAME bench_dict SOURCES… [LINK target…])
function(hopbox_bench)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "NAME" "SOURCES;LINK")
  add_executable(${arg_NAME} ${arg_SOURCES})
  target_link_libraries(${arg_NAME} PRIVATE compiler_settings bench_support ${arg_LINK})
  set_target_properties(${arg_NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bench")
endfunction()

# hopbox_fuzzer(NAME fuzz_prefs_document SOURCES… [LINK target…]); its seeds are in fuzz/corpus/NAME/.
function(hopbox_fuzzer)
  cmake_parse_arguments(PARSE_ARGV 0 arg "" "NAME" "SOURCES;LINK")
  add_executable(${arg_NAME} ${arg_SOURCES})
  target_link_libraries(${arg_NAME} PRIVATE compiler_settings Qt5::Core ${arg_LINK})
  target_link_options(${arg_NAME} PRIVATE -fsanitize=fuzzer)
  set_target_properties(${arg_NAME} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/fuzz")
  add_dependencies(fuzzers ${arg_NAME})
endfunction()
