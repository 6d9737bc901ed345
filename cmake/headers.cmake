# The target `headers`: every header of ours compiled alone, twice in a row. It holds that a header
# includes what it uses and may be included again.
find_package(GTest REQUIRED)
file(GLOB_RECURSE ownHeaders RELATIVE ${CMAKE_SOURCE_DIR} CONFIGURE_DEPENDS
  platform/*.h foundation/*.h scenario/*.h message/*.h graphics/*.h audio/*.h input/*.h screens/*.h
  host/*.h scenes/*.h tools/*.h tests/support/*.h bench/*.h)
set(headerSources)
foreach(header ${ownHeaders})
  set(source ${CMAKE_BINARY_DIR}/headers/${header}.cpp)
  file(CONFIGURE OUTPUT ${source} CONTENT "#include \"${header}\"\n#include \"${header}\"\n" @ONLY)
  list(APPEND headerSources ${source})
endforeach()
add_library(headers OBJECT EXCLUDE_FROM_ALL ${headerSources})
target_compile_options(headers PRIVATE -O0)
target_link_libraries(headers PRIVATE qv Freetype::Freetype PkgConfig::SDL2 PkgConfig::PNG
  GTest::gtest GTest::gmock)
foreach(neighbour qv_sdl qv_scenes qv_host qv_test_support)
  if(TARGET ${neighbour})
    target_link_libraries(headers PRIVATE ${neighbour})
  endif()
endforeach()
