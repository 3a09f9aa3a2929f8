# veranox_desktop_tests(NAME SOURCES ... LIBRARIES ... [OPTIONS --no-wm ...])
#
# Tests that need a desktop: one ctest entry for each TEST_F and TEST of the sources, run in a virtual desktop of its own
# with these options.
function(veranox_desktop_tests name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LIBRARIES;OPTIONS")
  add_executable(${name}_tests ${arg_SOURCES} ${CMAKE_SOURCE_DIR}/Tests/Support/GuiTestMain.cpp)
  set_target_properties(${name}_tests PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
  target_link_libraries(${name}_tests PRIVATE veranox_test_support veranox_warnings ${arg_LIBRARIES})
  veranox_use_precompiled(tests ${name}_tests)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${arg_SOURCES})
  foreach(source IN LISTS arg_SOURCES)
    file(STRINGS ${source} headings REGEX "^TEST(_F)?\\(")
    foreach(heading IN LISTS headings)
      string(REGEX REPLACE "^TEST(_F)?\\(([A-Za-z0-9]+), *([A-Za-z0-9]+)\\).*" "\\2.\\3" case "${heading}")
      add_test(NAME desktop.${name}.${case}
        COMMAND ${CMAKE_SOURCE_DIR}/Tests/Support/virtual-desktop ${arg_OPTIONS} --
          $<TARGET_FILE:${name}_tests> --gtest_filter=${case})
      set_tests_properties(desktop.${name}.${case} PROPERTIES LABELS desktop TIMEOUT 120)
    endforeach()
  endforeach()
endfunction()
