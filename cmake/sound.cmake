# What a game sounds like, built into its game folder. Each file is made by a command of its own, so
# that they are made in parallel and only again when their source changed.

# qv_add_songs(TARGET FOLDER DIR GAME_FOLDER DIR)
#
# Every song of the folder (NAME.song, see docs/song-notation.md), in the five variants for kinds of
# devices: midi/NAMEa.mid to midi/NAMEe.mid.
function(qv_add_songs target)
  cmake_parse_arguments(PARSE_ARGV 1 sound "" "FOLDER;GAME_FOLDER" "")
  cmake_path(ABSOLUTE_PATH sound_FOLDER NORMALIZE)
  file(GLOB songs CONFIGURE_DEPENDS ${sound_FOLDER}/*.song)
  # As with pictures, the tool's program is no dependency, its sources are.
  file(GLOB tool CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/tools/song/*)
  set(outputs)
  foreach(song ${songs})
    cmake_path(GET song STEM name)
    foreach(variant a b c d e)
      set(output ${sound_GAME_FOLDER}/midi/${name}${variant}.mid)
      add_custom_command(OUTPUT ${output}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${sound_GAME_FOLDER}/midi
        COMMAND ${QV_GAME_TOOL} song encode ${song} ${output} --variant ${variant}
        DEPENDS ${song} ${tool}
        COMMENT "Song ${name}${variant}" VERBATIM)
      list(APPEND outputs ${output})
    endforeach()
  endforeach()
  qv_game_files(${target} ${outputs})
endfunction()

# qv_add_effects(TARGET LIST FILE GAME_FOLDER DIR)
#
# Effects from recipes for sox. A line of the list: the file's three digits, then what sox does to
# silence; lines that are empty or begin with "#" are passed over.
function(qv_add_effects target)
  cmake_parse_arguments(PARSE_ARGV 1 sound "" "LIST;GAME_FOLDER" "")
  cmake_path(ABSOLUTE_PATH sound_LIST NORMALIZE OUTPUT_VARIABLE list)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${list})
  find_program(QV_SOX sox REQUIRED)
  file(STRINGS ${list} lines REGEX "^[^#]*[^# \t]")
  set(outputs)
  foreach(line ${lines})
    if(line MATCHES "^[ \t]*#")
      continue()
    endif()
    separate_arguments(recipe UNIX_COMMAND "${line}")
    list(POP_FRONT recipe number)
    if(NOT number MATCHES "^[0-9][0-9][0-9]$" OR NOT recipe)
      message(FATAL_ERROR "${list}: \"${line}\" is no recipe; write three digits and sox's words.")
    endif()
    set(output ${sound_GAME_FOLDER}/wave/vlse${number}.wav)
    if(output IN_LIST outputs)
      message(FATAL_ERROR "${list}: ${number} stands there twice.")
    endif()
    # -R: the same noise at each build.
    add_custom_command(OUTPUT ${output}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${sound_GAME_FOLDER}/wave
      COMMAND ${QV_SOX} -R -r 22050 -c 1 -n -b 16 ${output} ${recipe}
      COMMENT "Effect ${number}" VERBATIM)
    list(APPEND outputs ${output})
  endforeach()
  qv_game_files(${target} ${outputs})
endfunction()

# qv_add_voices(TARGET FOLDER DIR GAME_FOLDER DIR)
#
# The voices of the folder (V00/NAME.flac and so on), unpacked as the data disc has them:
# disc/VOICE/V00/NAME.wav.
function(qv_add_voices target)
  cmake_parse_arguments(PARSE_ARGV 1 sound "" "FOLDER;GAME_FOLDER" "")
  cmake_path(ABSOLUTE_PATH sound_FOLDER NORMALIZE)
  find_program(QV_FLAC flac REQUIRED)
  file(GLOB voices RELATIVE ${sound_FOLDER} CONFIGURE_DEPENDS ${sound_FOLDER}/V*/*.flac)
  set(outputs)
  foreach(voice ${voices})
    cmake_path(GET voice PARENT_PATH folder)
    cmake_path(GET voice STEM LAST_ONLY name)
    set(target_folder ${sound_GAME_FOLDER}/disc/VOICE/${folder})
    set(output ${target_folder}/${name}.wav)
    add_custom_command(OUTPUT ${output}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${target_folder}
      COMMAND ${QV_FLAC} --silent --force --decode ${sound_FOLDER}/${voice} -o ${output}
      DEPENDS ${sound_FOLDER}/${voice}
      COMMENT "Voice ${folder}/${name}" VERBATIM)
    list(APPEND outputs ${output})
  endforeach()
  qv_game_files(${target} ${outputs})
endfunction()

# qv_add_disc(TARGET FOLDER DIR GAME_FOLDER DIR)
#
# The data disc's cue sheet (disc.cue) and the audio tracks that it lists, as they are.
function(qv_add_disc target)
  cmake_parse_arguments(PARSE_ARGV 1 sound "" "FOLDER;GAME_FOLDER" "")
  cmake_path(ABSOLUTE_PATH sound_FOLDER NORMALIZE)
  file(GLOB files RELATIVE ${sound_FOLDER} CONFIGURE_DEPENDS
    ${sound_FOLDER}/*.cue ${sound_FOLDER}/*.flac)
  set(outputs)
  foreach(file ${files})
    set(output ${sound_GAME_FOLDER}/disc/${file})
    add_custom_command(OUTPUT ${output}
      COMMAND ${CMAKE_COMMAND} -E make_directory ${sound_GAME_FOLDER}/disc
      COMMAND ${CMAKE_COMMAND} -E copy ${sound_FOLDER}/${file} ${output}
      DEPENDS ${sound_FOLDER}/${file}
      COMMENT "Disc ${file}" VERBATIM)
    list(APPEND outputs ${output})
  endforeach()
  qv_game_files(${target} ${outputs})
endfunction()
