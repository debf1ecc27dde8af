# What every target of ours is compiled with.
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

find_program(CCACHE_PROGRAM ccache)
if(CCACHE_PROGRAM)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
  set(CMAKE_C_COMPILER_LAUNCHER "${CCACHE_PROGRAM}")
endif()

if(HOPBOX_SANITIZER)
  # The light form of debug information: call stacks with lines, at half the size of the build.
  set(CMAKE_CXX_FLAGS_DEBUG "-O0 -g1")
endif()
if(HOPBOX_SANITIZER STREQUAL "address")
  # gcc's optimised code under this sanitizer costs compile time and gains little at run time.
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer -O1)
  add_link_options(-fsanitize=address,undefined)
elseif(HOPBOX_SANITIZER STREQUAL "thread")
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer -O1)
  add_link_options(-fsanitize=thread)
elseif(HOPBOX_SANITIZER)
  message(FATAL_ERROR "HOPBOX_SANITIZER is '${HOPBOX_SANITIZER}', not 'address' or 'thread'")
endif()
if(HOPBOX_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link,address,undefined -fno-sanitize-recover=all -g1)
  add_link_options(-fsanitize=address,undefined)
endif()

# What warns, by compiler: what both GCC and clang know, what one of them knows alone, and the nearest that
# another compiler has.
add_library(compiler_settings INTERFACE)
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
  target_compile_options(compiler_settings INTERFACE
    -Wall -Wextra -Wpedantic -Werror -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual
    -Wformat=2 -Wimplicit-fallthrough -Wundef)
elseif(MSVC)
  target_compile_options(compiler_settings INTERFACE /W4 /WX /permissive- /utf-8 /Zc:__cplusplus)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(compiler_settings INTERFACE -Wlogical-op -Wduplicated-cond -Wduplicated-branches)
elseif(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  target_compile_options(compiler_settings INTERFACE -Wextra-semi -Wself-assign)
endif()
# Text literals say which encoding they are in, and no text becomes bytes by accident.
target_compile_definitions(compiler_settings INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
  QT_NO_FOREACH QT_DEPRECATED_WARNINGS)
if(WIN32)
  target_compile_definitions(compiler_settings INTERFACE
    UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0601)
  # The headers of Boost and CLI11, reached through a folder that holds nothing else, so that no header of
  # the build machine is taken for one of Windows.
  file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/headers-only")
  find_path(BOOST_HEADERS boost/version.hpp PATHS /usr/local/include /usr/include REQUIRED NO_CMAKE_FIND_ROOT_PATH)
  find_path(CLI11_HEADERS CLI/CLI.hpp PATHS /usr/local/include /usr/include REQUIRED NO_CMAKE_FIND_ROOT_PATH)
  file(CREATE_LINK "${BOOST_HEADERS}/boost" "${CMAKE_BINARY_DIR}/headers-only/boost" SYMBOLIC)
  file(CREATE_LINK "${CLI11_HEADERS}/CLI" "${CMAKE_BINARY_DIR}/headers-only/CLI" SYMBOLIC)
  target_include_directories(compiler_settings SYSTEM INTERFACE "${CMAKE_BINARY_DIR}/headers-only")
endif()
