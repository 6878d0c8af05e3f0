# What every target of ours shares: warnings, Qt's strict string macros, hardening.
set(QUILLHAVEN_SANITIZE "" CACHE STRING "Value for -fsanitize=, such as address,undefined or thread")

add_library(quillhaven_options INTERFACE)
target_compile_options(quillhaven_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wconversion -Wno-sign-conversion
  -Wimplicit-fallthrough -Wextra-semi -Werror
  -fstack-protector-strong -fno-omit-frame-pointer)
target_compile_definitions(quillhaven_options INTERFACE
  QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_DISABLE_DEPRECATED_BEFORE=0x060400
  "$<$<CONFIG:Release,RelWithDebInfo>:_FORTIFY_SOURCE=2>")
target_link_options(quillhaven_options INTERFACE -fuse-ld=lld -Wl,-z,relro,-z,now)
if(QUILLHAVEN_SANITIZE)
  # The null check misreads the null QPrivateSignal reference of Qt's own connect.
  target_compile_options(quillhaven_options INTERFACE -fsanitize=${QUILLHAVEN_SANITIZE} -fno-sanitize=null
    -fno-sanitize-recover=undefined)
  target_link_options(quillhaven_options INTERFACE -fsanitize=${QUILLHAVEN_SANITIZE})
endif()

# quillhaven_library(NAME SOURCES... [LINKS targets...]): one subsystem, one static library.
function(quillhaven_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_library(quillhaven_${name} STATIC ${ARG_SOURCES})
  target_include_directories(quillhaven_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(quillhaven_${name} PUBLIC ${ARG_LINKS} PRIVATE quillhaven_options)
  # The fuzzers are led by which lines of these an input reaches.
  if(QUILLHAVEN_FUZZ AND name MATCHES "^(catalogue|formats|platform_linux|engine)$")
    target_compile_options(quillhaven_${name} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()
