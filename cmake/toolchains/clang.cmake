# Compiles with clang: the one that the environment names (CXX), else the first that is found.
if(DEFINED ENV{CXX})
  set(CMAKE_CXX_COMPILER "$ENV{CXX}")
else()
  find_program(CLANGXX_PROGRAM NAMES clang++ clang++-19 clang++-18 clang++-17 clang++-16 clang++-15 clang++-14 REQUIRED)
  set(CMAKE_CXX_COMPILER "${CLANGXX_PROGRAM}")
endif()
