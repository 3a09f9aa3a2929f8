# One language level, every warning an error, and Qt's sharp edges closed.
set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_LINK_DEPENDS_NO_SHARED ON)

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  message(FATAL_ERROR "g++ below 13 destroys some temporaries of a co_await expression twice, so Veranox built with it "
                      "would crash. Use clang 19 (cmake --preset release) or g++ 13 or newer.")
endif()

option(VERANOX_TESTS "Build the tests" ON)
option(VERANOX_BENCHMARKS "Build the benchmarks" OFF)
option(VERANOX_FUZZERS "Build the fuzzers (clang only)" OFF)

find_program(CCACHE ccache)
if(CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER
      ${CMAKE_COMMAND} -E env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 CCACHE_PCH_EXTSUM=1
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE})
endif()
if(APPLE)
  # std::stop_token is behind this in libc++ up to version 19.
  add_compile_options(-fexperimental-library)
endif()
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang" AND NOT APPLE)
  add_link_options(-fuse-ld=lld)
  add_compile_options(SHELL:-Xclang\ -fno-pch-timestamp)
endif()

# Everywhere, since a precompiled header and its readers must agree, and some packages ask for it.
add_compile_options(-pthread)

# Warnings of our own code: link this, never the bare flags.
add_library(veranox_warnings INTERFACE)
target_compile_options(veranox_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Werror
  -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wconversion -Wsign-conversion -Wdouble-promotion
  -Wnull-dereference -Wcast-align -Wformat=2 -Wimplicit-fallthrough -Wextra-semi -Wundef -Wunused)
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  target_compile_options(veranox_warnings INTERFACE
    -Wno-missing-designated-field-initializers
    -Wnewline-eof -Wrange-loop-analysis -Wunreachable-code -Wcomma -Wheader-hygiene -Wsuggest-override)
endif()

# Qt as strict as it can be made: no silent text casts, no keywords as macros, no calls that are on their way out.
add_library(veranox_qt_strict INTERFACE)
target_compile_definitions(veranox_qt_strict INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT QT_NO_CONTEXTLESS_CONNECT QT_STRICT_ITERATORS QT_STRICT_QLIST_ITERATORS
  QT_NO_KEYWORDS QT_NO_FOREACH QT_NO_JAVA_STYLE_ITERATORS QT_DISABLE_DEPRECATED_BEFORE=0x060400)
