# Headers that many sources read, compiled once for each kind of source. Only headers of libraries: a change of our own
# would build everything anew.
function(veranox_precompiled name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LIBRARIES")
  set(target precompiled_${name})
  file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/generated/${target}.cpp CONTENT "// Carries the precompiled header.\n" @ONLY)
  add_library(${target} OBJECT ${CMAKE_BINARY_DIR}/generated/${target}.cpp)
  set_target_properties(${target} PROPERTIES AUTOMOC OFF)
  target_link_libraries(${target} PRIVATE ${arg_LIBRARIES})
  target_precompile_headers(${target} PRIVATE ${CMAKE_SOURCE_DIR}/cmake/Precompiled/${name}.h)
endfunction()

function(veranox_use_precompiled name)
  foreach(target IN LISTS ARGN)
    target_precompile_headers(${target} REUSE_FROM precompiled_${name})
    target_compile_options(${target} PRIVATE -fPIC) # as the header: CMake builds programs with -fPIE
  endforeach()
endfunction()

veranox_precompiled(core LIBRARIES Qt6::Core Qt6::Network veranox_qt_strict)
veranox_precompiled(face LIBRARIES Qt6::Widgets Qt6::Quick veranox_qt_strict)
veranox_precompiled(service LIBRARIES Boost::headers Boost::json OpenSSL::SSL)
if(VERANOX_TESTS)
  veranox_precompiled(tests LIBRARIES Qt6::Core Qt6::Network GTest::gmock veranox_qt_strict)
  veranox_precompiled(service_tests LIBRARIES Boost::headers Boost::json OpenSSL::SSL GTest::gmock)
endif()
