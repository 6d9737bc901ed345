# qv_game_files(TARGET FILE...)
#
# The target of files that a build makes into a game folder. What the target made at an earlier time
# and no list names any more is removed: a folder that is handed on holds nothing of the past.
function(qv_game_files target)
  set(note ${CMAKE_CURRENT_BINARY_DIR}/${target}.files)
  if(EXISTS ${note})
    file(STRINGS ${note} before ENCODING UTF-8)
    foreach(file ${before})
      if(NOT file IN_LIST ARGN)
        file(REMOVE ${file})
      endif()
    endforeach()
  endif()
  list(JOIN ARGN "\n" lines)
  file(WRITE ${note} "${lines}\n")
  add_custom_target(${target} ALL DEPENDS ${ARGN})
endfunction()
