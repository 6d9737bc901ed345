# qv_add_story(TARGET FOLDER DIR [GAME_FOLDER DIR] [SOURCES FILE...])
#
# Compiles the story in FOLDER (story.txt and *.scene, see docs/scene-language.md) to the module
# "game.so" in GAME_FOLDER. SOURCES are hand-written scenes of the story. A static build makes an
# object library TARGET instead; an executable takes it by qv_link_story(EXECUTABLE TARGET).
function(qv_add_story target)
  cmake_parse_arguments(PARSE_ARGV 1 story "" "FOLDER;GAME_FOLDER" "SOURCES")
  cmake_path(ABSOLUTE_PATH story_FOLDER NORMALIZE)
  file(GLOB_RECURSE texts CONFIGURE_DEPENDS ${story_FOLDER}/*.scene ${story_FOLDER}/story.txt)

  # Some twenty scenes share a unit. Their number is settled here, because the build must know the
  # names of its sources; it may lag behind a growing story without harm.
  set(sceneCount 0)
  foreach(text ${texts})
    file(STRINGS ${text} heads REGEX "^[ \t]*@(scene|chain)[ \t]")
    list(LENGTH heads count)
    math(EXPR sceneCount "${sceneCount} + ${count}")
  endforeach()
  math(EXPR units "(${sceneCount} + 19) / 20")
  if(units LESS 1)
    set(units 1)
  endif()

  set(folder ${CMAKE_CURRENT_BINARY_DIR}/${target}.scenes)
  set(generated ${folder}/scene_table.cpp)
  math(EXPR last "${units} - 1")
  foreach(index RANGE ${last})
    set(number "00${index}")
    string(LENGTH ${number} length)
    math(EXPR start "${length} - 3")
    string(SUBSTRING ${number} ${start} 3 number)
    list(APPEND generated ${folder}/scenes_${number}.cpp)
  endforeach()
  add_custom_command(OUTPUT ${generated}
    COMMAND scenec --out ${folder} --units ${units} ${story_FOLDER}
    DEPENDS scenec ${texts}
    COMMENT "Compiling the scene texts of ${target}" VERBATIM)

  set(sources ${generated} ${story_SOURCES} ${CMAKE_SOURCE_DIR}/scenes/scene_form.cpp
    ${CMAKE_SOURCE_DIR}/scenes/entry.cpp)
  if(QV_STATIC)
    add_library(${target} OBJECT ${sources})
    target_include_directories(${target} PUBLIC ${CMAKE_SOURCE_DIR})
  else()
    add_library(${target} MODULE ${sources})
    target_link_libraries(${target} PRIVATE qv)
    set_target_properties(${target} PROPERTIES PREFIX "" OUTPUT_NAME game SUFFIX .so)
    if(story_GAME_FOLDER)
      set_target_properties(${target} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${story_GAME_FOLDER})
    endif()
    # Scenes of one module never meet those of another.
    target_link_options(${target} PRIVATE -Wl,-Bsymbolic)
  endif()
  # A scene runs at the pace of its player: compile it quickly.
  target_compile_options(${target} PRIVATE -O1)
endfunction()

# Links a story into an executable of a static build.
function(qv_link_story executable story)
  target_sources(${executable} PRIVATE $<TARGET_OBJECTS:${story}>)
endfunction()

# qv_add_frame(TARGET GAME_FOLDER): a story of tests or benches stands in the frame of the sample, and
# has one of its voices. Copied, because a game's files stand in its own folder.
function(qv_add_frame target folder)
  set(sample ${QV_OUTPUT_DIR}/vorlane)
  add_custom_target(${target}_frame
    COMMAND ${CMAKE_COMMAND} -E copy_directory ${sample}/dat ${folder}/dat
    COMMAND ${CMAKE_COMMAND} -E copy_directory ${sample}/cg ${folder}/cg
    COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}/disc/VOICE/V00
    COMMAND ${CMAKE_COMMAND} -E copy ${sample}/disc/VOICE/V00/0000_001.wav ${folder}/disc/VOICE/V00
    VERBATIM)
  add_dependencies(${target}_frame vorlane_pictures vorlane_voices)
  add_dependencies(${target} ${target}_frame)
endfunction()
