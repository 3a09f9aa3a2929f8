# Headers that many sources read, compiled once for each kind of source. Only headers of libraries: a change of our own
# would build everything anew.
function(veranox_precompiled name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LIBRARIES;OPTIONS")
  set(target precompiled_${name})
  file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/generated/${target}.cpp CONTENT "// Carries the precompiled header.\n" @ONLY)
  add_library(${target} OBJECT ${CMAKE_BINARY_DIR}/generated/${target}.cpp)
  set_target_properties(${target} PROPERTIES AUTOMOC OFF)
  target_link_libraries(${target} PRIVATE ${arg_LIBRARIES})
  target_compile_options(${target} PRIVATE ${arg_OPTIONS}) # those of the targets that use it
  target_precompile_headers(${target} PRIVATE ${CMAKE_SOURCE_DIR}/cmake/Precompiled/${name}.h)
  set(header ${CMAKE_BINARY_DIR}/CMakeFiles/${target}.dir/cmake_pch.hxx.pch)
  file(WRITE ${header}.sum "${VERANOX_PACKAGES_SUM} ${name}")
  # A source may be compiled as soon as the commands are done that its target depends on, and not later: so the header
  # counts as what a command makes.
  add_custom_command(OUTPUT ${header}.ready COMMAND ${CMAKE_COMMAND} -E touch ${header}.ready DEPENDS ${header})
  add_custom_target(${target}_ready DEPENDS ${header}.ready)
endfunction()

# What the content of a precompiled header depends on, but for the compiler's flags: our list of headers, and the
# installed packages that they come from.
file(GLOB lists CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/cmake/Precompiled/*.h)
set(text "${CMAKE_CXX_COMPILER_VERSION}")
foreach(list IN LISTS lists)
  file(SHA256 ${list} sum)
  string(APPEND text ${sum})
endforeach()
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${lists})
if(EXISTS /var/lib/dpkg/status)
  execute_process(
    COMMAND dpkg-query -W libc6-dev libstdc++-12-dev qt6-base-dev qt6-declarative-dev libboost1.81-dev libssl-dev
      libgtest-dev libgmock-dev
    OUTPUT_VARIABLE packages ERROR_QUIET)
  string(APPEND text "${packages}")
endif()
string(SHA256 VERANOX_PACKAGES_SUM "${text}")

# Qt compiles the target's resources, in targets of their own, with the options of the target.
function(veranox_wait_for_precompiled target ready)
  add_dependencies(${target} ${ready})
  set(number 1)
  while(TARGET ${target}_resources_${number})
    add_dependencies(${target}_resources_${number} ${ready})
    math(EXPR number "${number} + 1")
  endwhile()
endfunction()

# With clang the header is named in a way that the compiler cache understands in every checkout: by a path that it makes
# relative, and a sum that stands for the header's content.
function(veranox_use_precompiled name)
  foreach(target IN LISTS ARGN)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
      set(folder ${CMAKE_BINARY_DIR}/CMakeFiles/precompiled_${name}.dir)
      veranox_wait_for_precompiled(${target} precompiled_${name}_ready)
      target_compile_options(${target} PRIVATE
        -fPIC # as the header: CMake builds programs with -fPIE
        "SHELL:-Winvalid-pch -include-pch ${folder}/cmake_pch.hxx.pch")
    else()
      target_precompile_headers(${target} REUSE_FROM precompiled_${name})
    endif()
  endforeach()
endfunction()

veranox_precompiled(core LIBRARIES Qt6::Core Qt6::Network veranox_qt_strict OPTIONS ${VERANOX_ROOM_OPTIONS})
veranox_precompiled(face LIBRARIES Qt6::Widgets Qt6::Quick veranox_qt_strict OPTIONS ${VERANOX_ROOM_OPTIONS})
veranox_precompiled(service LIBRARIES Boost::headers Boost::json OpenSSL::SSL)
if(VERANOX_TESTS)
  veranox_precompiled(tests LIBRARIES Qt6::Core Qt6::Network GTest::gmock veranox_qt_strict)
  veranox_precompiled(service_tests LIBRARIES Boost::headers Boost::json OpenSSL::SSL GTest::gmock)
endif()
