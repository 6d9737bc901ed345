# Flags that hold for every target of the project.
if(NOT CMAKE_BUILD_TYPE)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "" FORCE)
endif()
# Assertions state facts about our own code and stay on for players too.
set(CMAKE_CXX_FLAGS_RELEASE "-O2")
set(CMAKE_CXX_FLAGS_DEBUG "-O1 -g -DQV_DEBUG")

add_compile_options(-Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
  -Wimplicit-fallthrough -Werror -fno-semantic-interposition)
if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  # Scenes return a struct of one pointer from C-named functions.
  add_compile_options(-Wno-return-type-c-linkage)
endif()

if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
  # GCC 12 finds overlapping copies inside std::string's own assignment (its bug 105651).
  add_compile_options(-Wno-restrict)
endif()

if(QV_SANITIZE)
  add_compile_options(-fsanitize=${QV_SANITIZE} -fno-omit-frame-pointer -g1)
  add_link_options(-fsanitize=${QV_SANITIZE})
  if(QV_SANITIZE MATCHES "undefined")
    add_compile_options(-fno-sanitize-recover=undefined)
  endif()
endif()
if(QV_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

find_program(QV_CCACHE ccache)
if(QV_CCACHE)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${QV_CCACHE})
endif()
find_program(QV_MOLD mold)
if(QV_MOLD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND NOT QV_SANITIZE)
  add_link_options(-fuse-ld=mold)
endif()
