# qv_add_pictures(TARGET LIST FILE GAME_FOLDER DIR)
#
# Builds the pictures that the list names into the game folder, each by a command of its own, so
# that they are made in parallel and only again when their drawing or their line changed. A line:
#
#   NAME SOURCE WxH ENTRIES KEY [OPTION...]
#
# NAME       the picture's name without ".mcg"; "dat/mframe" goes to dat/, a plain name to cg/. A name
#            with an ending of its own, as "dat/L0pal.dat", keeps it
# SOURCE     the SVG or PNG file, from the list's own folder
# WxH        the size of a rendered drawing; "-" for its own (a PNG has no other)
# ENTRIES    the palette entries that it may fill, as 10-127; "-" for all that are free
# KEY        the index of transparent pixels; "-" for none
# OPTION     more of qvtool's options, as --no-statics; or set:NAME: all pictures of that set share
#            their colours (they have the same ENTRIES, KEY and options), so that one may dissolve
#            into another
#
# Lines that are empty or begin with "#" are passed over.
function(qv_add_pictures target)
  cmake_parse_arguments(PARSE_ARGV 1 art "" "LIST;GAME_FOLDER" "")
  cmake_path(ABSOLUTE_PATH art_LIST NORMALIZE OUTPUT_VARIABLE list)
  cmake_path(GET list PARENT_PATH sources)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${list})
  # The tool's program is no dependency: it is linked anew with every change of the engine, and no
  # picture changes by that. Its sources are.
  file(GLOB tool CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tools/picture_codec/*
    ${CMAKE_SOURCE_DIR}/tools/qvtool/quantise.* ${CMAKE_SOURCE_DIR}/tools/qvtool/svg.cpp
    ${CMAKE_SOURCE_DIR}/tools/qvtool/png.cpp)

  file(STRINGS ${list} lines REGEX "^[^#]*[^# \t]")
  # The sources of each set, before the first command that needs them.
  list(FILTER lines EXCLUDE REGEX "^[ \t]*#")
  foreach(line ${lines})
    if(line MATCHES "^[ \t]*[^ \t]+[ \t]+([^ \t]+).*[ \t]set:([^ \t]+)")
      list(APPEND set_${CMAKE_MATCH_2} ${sources}/${CMAKE_MATCH_1})
    endif()
  endforeach()
  set(pictures)
  foreach(line ${lines})
    string(REGEX REPLACE "[ \t]+" ";" fields "${line}")
    list(REMOVE_ITEM fields "")
    list(LENGTH fields count)
    if(count LESS 5)
      message(FATAL_ERROR "${list}: \"${line}\" has ${count} fields; "
        "write NAME SOURCE WxH ENTRIES KEY.")
    endif()
    list(GET fields 0 name)
    list(GET fields 1 source)
    list(GET fields 2 size)
    list(GET fields 3 entries)
    list(GET fields 4 key)
    if(NOT EXISTS ${sources}/${source})
      message(FATAL_ERROR "${list}: the source ${source} of ${name} is not there.")
    endif()
    if(NOT name MATCHES "/")
      set(name cg/${name})
    endif()
    if(NOT name MATCHES "\\.[A-Za-z]+$")
      string(APPEND name .mcg)
    endif()
    set(output ${art_GAME_FOLDER}/${name})
    if(output IN_LIST pictures)
      message(FATAL_ERROR "${list}: ${name} stands there twice.")
    endif()
    cmake_path(GET output PARENT_PATH folder)
    set(options ${fields})
    list(REMOVE_AT options 0 1 2 3 4)
    if(NOT size STREQUAL "-")
      list(APPEND options --size ${size})
    endif()
    if(NOT entries STREQUAL "-")
      list(APPEND options --entries ${entries})
    endif()
    if(NOT key STREQUAL "-")
      list(APPEND options --key-transparent ${key})
    endif()
    set(companions)
    if(options MATCHES "set:([^;]+)")
      list(REMOVE_ITEM options ${CMAKE_MATCH_0})
      set(companions ${set_${CMAKE_MATCH_1}})
      list(REMOVE_DUPLICATES companions)
      list(REMOVE_ITEM companions ${sources}/${source})
      foreach(companion ${companions})
        list(APPEND options --palette-of ${companion})
      endforeach()
    endif()
    add_custom_command(OUTPUT ${output}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
      COMMAND ${QV_GAME_TOOL} mcg encode ${sources}/${source} ${output} ${options}
      DEPENDS ${sources}/${source} ${companions} ${tool}
      COMMENT "Picture ${name}" VERBATIM)
    list(APPEND pictures ${output})
  endforeach()
  qv_game_files(${target} ${pictures})
endfunction()
