# Cross-compiles for 64-bit Windows with Debian's mingw-w64, against the libraries that
# tools/windows/sdk lays out. Programs run through Wine; tools/windows/test sets its environment.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(HOPBOX_WINDOWS_SDK_ROOT "" CACHE PATH "The unpacked Windows SDK (Qt, QuaZip), see tools/windows/sdk")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES HOPBOX_WINDOWS_SDK_ROOT)
if(NOT EXISTS "${HOPBOX_WINDOWS_SDK_ROOT}/bin/Qt5Core.dll")
  message(FATAL_ERROR "No Windows SDK in '${HOPBOX_WINDOWS_SDK_ROOT}': run tools/windows/sdk first.")
endif()

set(CMAKE_FIND_ROOT_PATH "${HOPBOX_WINDOWS_SDK_ROOT}" /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_PREFIX_PATH "${HOPBOX_WINDOWS_SDK_ROOT}")

set(CMAKE_CROSSCOMPILING_EMULATOR "${CMAKE_CURRENT_LIST_DIR}/../../tools/windows/run")
