# VERANOX_SANITIZER: empty, "address" (with undefined), "thread" or "coverage". The presets set it.
set(VERANOX_SANITIZER "" CACHE STRING "address, thread, coverage or empty")
set_property(CACHE VERANOX_SANITIZER PROPERTY STRINGS "" address thread coverage)

if(VERANOX_SANITIZER STREQUAL "address")
  # -fno-sanitize=function: clang cannot compile coroutine templates with it (llvm issue 49689).
  set(flags -fsanitize=address,undefined -fno-sanitize-recover=undefined -fno-sanitize=function -fno-omit-frame-pointer)
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
elseif(VERANOX_SANITIZER STREQUAL "thread")
  set(flags -fsanitize=thread -fno-omit-frame-pointer)
elseif(VERANOX_SANITIZER STREQUAL "coverage")
  set(flags -fprofile-instr-generate -fcoverage-mapping)
elseif(VERANOX_SANITIZER)
  message(FATAL_ERROR "VERANOX_SANITIZER is \"${VERANOX_SANITIZER}\": use address, thread, coverage or leave it empty.")
endif()
add_compile_options(${flags})
add_link_options(${flags})

# The sanitizers' presets leave the optimiser out: it makes coroutines cost two to three times as much to compile, and
# finds nothing. Only the application's rooms keep it, as tests hold them to the time that a turn may take.
set(VERANOX_ROOM_OPTIONS "")
if(VERANOX_SANITIZER MATCHES "^(address|thread)$")
  set(VERANOX_ROOM_OPTIONS -O1)
endif()

if(VERANOX_FUZZERS)
  # Fuzzers are led by the branches that our own code takes; all of it, so that it agrees with its precompiled headers.
  add_compile_options(-fsanitize=fuzzer-no-link)
  add_link_options(-fsanitize=fuzzer-no-link)
endif()
