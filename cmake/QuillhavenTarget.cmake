# SPDX-License-Identifier: GPL-3.0-or-later

# What all targets share: warnings, Qt's strict string macros, hardening, and an include root for each library.
set(QUILLHAVEN_SANITIZE "" CACHE STRING "Value for -fsanitize=, such as address,undefined or thread")
option(QUILLHAVEN_WERROR "Treat compiler warnings as errors" OFF)

add_library(quillhaven_options INTERFACE)
target_compile_options(quillhaven_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wconversion -Wno-sign-conversion
  -Wimplicit-fallthrough -Wextra-semi $<$<BOOL:${QUILLHAVEN_WERROR}>:-Werror>
  -fstack-protector-strong -fno-omit-frame-pointer)
target_compile_definitions(quillhaven_options INTERFACE
  QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_DISABLE_DEPRECATED_BEFORE=0x060400)
# A packager's level of fortification takes precedence; a second definition of the macro would be an error.
if(NOT "${CMAKE_CXX_FLAGS}" MATCHES "_FORTIFY_SOURCE")
  target_compile_definitions(quillhaven_options INTERFACE "$<$<CONFIG:Release,RelWithDebInfo>:_FORTIFY_SOURCE=2>")
endif()
target_link_options(quillhaven_options INTERFACE -fuse-ld=lld -Wl,-z,relro,-z,now)
if(QUILLHAVEN_SANITIZE)
  # The null check reports false errors for the null QPrivateSignal reference in Qt's connect.
  target_compile_options(quillhaven_options INTERFACE -fsanitize=${QUILLHAVEN_SANITIZE} -fno-sanitize=null
    -fno-sanitize-recover=undefined)
  target_link_options(quillhaven_options INTERFACE -fsanitize=${QUILLHAVEN_SANITIZE})
endif()

# quillhaven_library(NAME SOURCES... [LINKS targets...]): a subsystem as a static library, in the folder of its CMakeLists.txt.
#
# A header is included by its path below src. Each library has its own include root, with links to its own headers only, so
# that including a header of a library that is not linked does not compile.
function(quillhaven_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_library(quillhaven_${name} STATIC ${ARG_SOURCES})
  set(root ${CMAKE_BINARY_DIR}/include/${name})
  file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR}/src ${CMAKE_CURRENT_SOURCE_DIR})
  file(GLOB headers CONFIGURE_DEPENDS RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  file(REMOVE_RECURSE ${root})
  file(MAKE_DIRECTORY ${root}/${folder})
  foreach(header ${headers})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR}/${header} ${root}/${folder}/${header} SYMBOLIC)
  endforeach()
  target_include_directories(quillhaven_${name} PUBLIC ${root})
  target_link_libraries(quillhaven_${name} PUBLIC ${ARG_LINKS} PRIVATE quillhaven_options)
  # The fuzzers are guided by the coverage of these libraries.
  if(QUILLHAVEN_FUZZ AND name MATCHES "^(catalogue|formats|cipher|backup|platform_linux_.*|engine|autolock|updates)$")
    target_compile_options(quillhaven_${name} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()
