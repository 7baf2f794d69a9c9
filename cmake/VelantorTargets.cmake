# What every target of the project shares: language level, warnings, sanitizers, precompiled headers.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# Hundreds of test programs are linked in half the time. Not with the thread sanitizer: gold puts constants beside the
# code, for which that wants a large temporary file, and some tests allow no large files.
find_program(VELANTOR_GOLD ld.gold)
if(VELANTOR_GOLD AND CMAKE_BUILD_TYPE STREQUAL "Debug" AND NOT VELANTOR_SANITIZERS MATCHES "thread")
  add_link_options(-fuse-ld=gold)
endif()

add_library(velantor_options INTERFACE)
target_compile_options(velantor_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-qual
  -Wformat=2 -Wimplicit-fallthrough -Wnull-dereference -Werror)
target_compile_definitions(velantor_options INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_KEYWORDS QT_NO_URL_CAST_FROM_STRING
  QT_DISABLE_DEPRECATED_BEFORE=0x050F00)
if(VELANTOR_SANITIZERS)
  # A static analysis warning that only an instrumented build raises tells nothing about the code.
  target_compile_options(velantor_options INTERFACE
    -fsanitize=${VELANTOR_SANITIZERS} -fno-omit-frame-pointer -fno-sanitize-recover=all
    -Wno-null-dereference)
  target_link_options(velantor_options INTERFACE -fsanitize=${VELANTOR_SANITIZERS})
endif()
if(VELANTOR_FUZZERS)
  target_compile_options(velantor_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

set(VELANTOR_PCH
  <QtCore/QByteArray> <QtCore/QDir> <QtCore/QFile> <QtCore/QJsonArray> <QtCore/QJsonDocument>
  <QtCore/QJsonObject> <QtCore/QString> <QtCore/QStringList>
  <algorithm> <array> <cmath> <cstdint> <cstring> <map> <memory> <stdexcept> <string> <vector>)

# velantor_library(NAME SOURCES a.cpp ... PUBLIC lib ... PRIVATE lib ...): one static library per folder of src/.
# Headers are included by their path below src/.
function(velantor_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;PUBLIC;PRIVATE")
  add_library(${name} STATIC ${arg_SOURCES})
  target_include_directories(${name} PUBLIC "${PROJECT_SOURCE_DIR}/src")
  target_link_libraries(${name} PUBLIC ${arg_PUBLIC} PRIVATE ${arg_PRIVATE} velantor_options)
  target_precompile_headers(${name} PRIVATE ${VELANTOR_PCH})
endfunction()
