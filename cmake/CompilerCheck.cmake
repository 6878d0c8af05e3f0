# SPDX-License-Identifier: GPL-3.0-or-later

# g++ 12 destroys temporaries of a co_await expression twice, at every optimisation level.
if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "Clang" OR CMAKE_CXX_COMPILER_VERSION VERSION_LESS 16)
  message(FATAL_ERROR
    "Quillhaven needs clang 16 or later (it is tested with Debian's clang-19): "
    "${CMAKE_CXX_COMPILER_ID} ${CMAKE_CXX_COMPILER_VERSION} is not known to compile its coroutines correctly. "
    "Configure with one of the presets: cmake --preset release")
endif()
