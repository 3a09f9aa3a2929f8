# A room is a folder with a library of its own. What a file of a room may include is what its room links, and nothing
# else: `scripts/lint rooms` holds every include against the table that veranox_write_rooms() leaves in the build tree.
set_property(GLOBAL PROPERTY VERANOX_ROOMS "")

# veranox_room(TARGET [LINKS ROOM_TARGET...]): makes the target the library of the folder at hand.
function(veranox_room target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LINKS")
  target_include_directories(${target} PUBLIC ${CMAKE_SOURCE_DIR})
  target_link_libraries(${target} PUBLIC ${arg_LINKS} PRIVATE veranox_warnings)
  target_compile_options(${target} PRIVATE ${VERANOX_ROOM_OPTIONS})
  file(RELATIVE_PATH folder ${CMAKE_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
  set_target_properties(${target} PROPERTIES VERANOX_ROOM ${folder})
  set_property(GLOBAL APPEND PROPERTY VERANOX_ROOMS "${folder}:${target}")
  set_target_properties(${target} PROPERTIES VERANOX_LINKS "${arg_LINKS}")
  # moc must look again when a header joins a library; CMake 3.25 with Ninja does not see that by itself.
  set_property(TARGET ${target} APPEND PROPERTY AUTOGEN_TARGET_DEPENDS
    ${CMAKE_CURRENT_BINARY_DIR}/CMakeFiles/${target}_autogen.dir/AutogenInfo.json)
endfunction()

# veranox_part(FOLDER [LINKS FOLDER...]): a room that is compiled into a library with others.
function(veranox_part folder)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LINKS")
  file(RELATIVE_PATH parent ${CMAKE_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR})
  cmake_path(SET room NORMALIZE "${parent}/${folder}")
  string(REGEX REPLACE "/$" "" room ${room})
  veranox_room_json(${room} "${arg_LINKS}" "${parent}/")
endfunction()

function(veranox_room_json folder links prefix)
  list(TRANSFORM links PREPEND "\"${prefix}")
  list(TRANSFORM links APPEND "\"")
  list(JOIN links ", " links)
  set_property(GLOBAL APPEND PROPERTY VERANOX_ROOMS_JSON "  {\"room\": \"${folder}\", \"links\": [${links}]}")
endfunction()

# Called once, after every room has been made.
function(veranox_write_rooms)
  get_property(rooms GLOBAL PROPERTY VERANOX_ROOMS)
  foreach(room IN LISTS rooms)
    string(REPLACE ":" ";" room "${room}")
    list(GET room 0 folder)
    list(GET room 1 target)
    get_target_property(links ${target} VERANOX_LINKS)
    set(folders "")
    foreach(link IN LISTS links)
      get_target_property(linked ${link} VERANOX_ROOM)
      list(APPEND folders ${linked})
    endforeach()
    veranox_room_json(${folder} "${folders}" "")
  endforeach()
  get_property(json GLOBAL PROPERTY VERANOX_ROOMS_JSON)
  list(JOIN json ",\n" json)
  file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/rooms.json CONTENT "[\n${json}\n]\n" @ONLY)
endfunction()
