# SPDX-License-Identifier: GPL-3.0-or-later

pkg_get_variable(QUILLHAVEN_WAYLAND_SCANNER wayland-scanner wayland_scanner)

# quillhaven_wayland_protocol(TARGET XML): generates the client's side of a Wayland protocol into the target, whose sources
# include it as "NAME-client-protocol.h", where NAME is the name of the file.
function(quillhaven_wayland_protocol target xml)
  get_filename_component(name ${xml} NAME_WE)
  set(header ${CMAKE_CURRENT_BINARY_DIR}/protocols/${name}-client-protocol.h)
  set(code ${CMAKE_CURRENT_BINARY_DIR}/protocols/${name}-protocol.c)
  file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/protocols)
  add_custom_command(OUTPUT ${header} DEPENDS ${xml}
    COMMAND ${QUILLHAVEN_WAYLAND_SCANNER} client-header ${xml} ${header})
  add_custom_command(OUTPUT ${code} DEPENDS ${xml}
    COMMAND ${QUILLHAVEN_WAYLAND_SCANNER} private-code ${xml} ${code})
  # As C++, so that the build needs no C compiler. The header declares what would be internal to the file there.
  set_source_files_properties(${code} PROPERTIES LANGUAGE CXX SKIP_AUTOGEN ON
    COMPILE_OPTIONS "-w;-include;${header}" OBJECT_DEPENDS ${header})
  set_source_files_properties(${header} PROPERTIES SKIP_AUTOGEN ON)
  target_sources(${target} PRIVATE ${header} ${code})
  target_include_directories(${target} SYSTEM PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/protocols)
endfunction()
