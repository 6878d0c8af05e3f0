# SPDX-License-Identifier: GPL-3.0-or-later

# One folder for all modules, so that each module can import the others.
set(QT_QML_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/qml)

# quillhaven_qml_library(NAME URI uri DEPENDENCIES modules... SOURCES... QML_FILES... [LINKS targets...])
#
# A static library quillhaven_NAME that is a QML module. A program or test only has to link it (or a library that links
# it), add "qrc:/" to its engine's import path and write "import <uri>": it imports no plugin and calls no registration
# function. Types with QML_ELEMENT in SOURCES become part of the module; list their headers too.
#
# The linker would drop the object file that registers the module's types, since nothing refers to it; the option below
# requests its symbol in everything that links the library.
#
# The files are compiled at build time, bindings to C++ if all types are known and to byte code otherwise, so that no QML
# is parsed at start. DEPENDENCIES are the QML modules that the files import and that the types in SOURCES use; qmllint
# and the compiler look for types there.
function(quillhaven_qml_library name)
  cmake_parse_arguments(ARG "" "URI" "DEPENDENCIES;SOURCES;QML_FILES;LINKS" ${ARGN})
  quillhaven_library(${name} SOURCES ${ARG_SOURCES} LINKS ${ARG_LINKS} Qt6::Quick)
  target_include_directories(quillhaven_${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  qt_add_qml_module(quillhaven_${name}
    URI ${ARG_URI} VERSION 1.0 NO_PLUGIN DEPENDENCIES ${ARG_DEPENDENCIES}
    IMPORT_PATH ${QT_QML_OUTPUT_DIRECTORY}
    RESOURCE_PREFIX / QML_FILES ${ARG_QML_FILES})
  # The warning options do not apply to code that Qt generates.
  get_target_property(sources quillhaven_${name} SOURCES)
  list(FILTER sources INCLUDE REGEX "/qmlcache/")
  set_source_files_properties(${sources} PROPERTIES COMPILE_OPTIONS -w)
  string(REPLACE "." "_" function "qml_register_types_${ARG_URI}")
  string(LENGTH ${function} length)
  target_link_options(quillhaven_${name} INTERFACE "LINKER:--undefined=_Z${length}${function}v")

  list(TRANSFORM ARG_QML_FILES PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/)
  set_property(GLOBAL APPEND PROPERTY QUILLHAVEN_LINTED_FILES ${ARG_QML_FILES})
  get_target_property(resources quillhaven_${name} _qt_generated_qrc_files)
  set_property(GLOBAL APPEND PROPERTY QUILLHAVEN_LINTED_RESOURCES ${resources})
endfunction()

# quillhaven_qml_lint_test(NAME)
#
# Runs qmllint on the files of all modules, with the types that the build has generated. Call it after the last module.
# .qmllint.ini selects the warnings; any warning fails the test.
function(quillhaven_qml_lint_test name)
  get_property(files GLOBAL PROPERTY QUILLHAVEN_LINTED_FILES)
  get_property(resources GLOBAL PROPERTY QUILLHAVEN_LINTED_RESOURCES)
  list(TRANSFORM resources PREPEND "--resource=")
  add_test(NAME ${name} COMMAND Qt6::qmllint -I ${QT_QML_OUTPUT_DIRECTORY} ${resources} ${files})
  set_tests_properties(${name} PROPERTIES LABELS unit)
endfunction()
