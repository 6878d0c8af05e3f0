# SPDX-License-Identifier: GPL-3.0-or-later

# quillhaven_qml_library(NAME URI uri SOURCES... QML_FILES... [LINKS targets...])
#
# A static library quillhaven_NAME that is a QML module. A program or test needs nothing but to link it (or a library
# that links it), to add "qrc:/" to its engine's import path and to write "import <uri>": no plugin is imported and no
# registration function called. Types with QML_ELEMENT in SOURCES enter the module; list their headers too.
#
# The linker would drop the object that registers the module's types, since nothing refers to it; the option below asks
# for its symbol in everything that links the library.
function(quillhaven_qml_library name)
  cmake_parse_arguments(ARG "" "URI" "SOURCES;QML_FILES;LINKS" ${ARGN})
  quillhaven_library(${name} SOURCES ${ARG_SOURCES} LINKS ${ARG_LINKS} Qt6::Quick)
  target_include_directories(quillhaven_${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  qt_add_qml_module(quillhaven_${name}
    URI ${ARG_URI} VERSION 1.0 NO_PLUGIN NO_LINT
    RESOURCE_PREFIX / QML_FILES ${ARG_QML_FILES})
  # Compiled to bytecode at build time, so that the start parses no QML.
  set_target_properties(quillhaven_${name} PROPERTIES QT_QMLCACHEGEN_ARGUMENTS "--only-bytecode")
  string(REPLACE "." "_" function "qml_register_types_${ARG_URI}")
  string(LENGTH ${function} length)
  target_link_options(quillhaven_${name} INTERFACE "LINKER:--undefined=_Z${length}${function}v")
endfunction()
