# Writes BuildInformation.h: what this build says of itself. The commit is that of the sources when the build was
# configured; a new commit configures again.
set(VERANOX_BUILD_NUMBER "1" CACHE STRING "The number of this build")
set(VERANOX_BUILD_CHANNEL "development" CACHE STRING "The channel through which this build reaches people")
set(VERANOX_BUILD_COMMIT "")
set(VERANOX_BUILD_DATE "")
find_package(Git QUIET)
if(GIT_FOUND)
  execute_process(COMMAND ${GIT_EXECUTABLE} rev-parse HEAD WORKING_DIRECTORY ${CMAKE_SOURCE_DIR}
    OUTPUT_VARIABLE VERANOX_BUILD_COMMIT OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  execute_process(COMMAND ${GIT_EXECUTABLE} log -1 --format=%cI WORKING_DIRECTORY ${CMAKE_SOURCE_DIR}
    OUTPUT_VARIABLE VERANOX_BUILD_DATE OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  if(EXISTS ${CMAKE_SOURCE_DIR}/.git/logs/HEAD)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/.git/logs/HEAD)
  endif()
endif()
configure_file(${CMAKE_SOURCE_DIR}/cmake/BuildInformation.h.in ${CMAKE_BINARY_DIR}/generated/BuildInformation.h @ONLY)
