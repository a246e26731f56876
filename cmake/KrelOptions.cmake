# The options shared by every target of our own: the language level, the warnings, the sanitizers.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# No NDEBUG in any build type: an assertion about the tree's shape has to hold for users as well.
set(CMAKE_CXX_FLAGS_DEBUG "-O0 -g")
set(CMAKE_CXX_FLAGS_RELEASE "-O2")
set(CMAKE_CXX_FLAGS_RELWITHDEBINFO "-O1 -g")

# Paths in the binary are relative to the repository: assertion texts are the same on every
# machine, and so is the build.
add_compile_options("-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=")

add_library(krel_options INTERFACE)
target_include_directories(krel_options INTERFACE ${CMAKE_SOURCE_DIR} ${CMAKE_BINARY_DIR})
target_compile_options(krel_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wold-style-cast -Wcast-qual -Wundef -Wconversion
  -Wsign-conversion -Wnull-dereference
  $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wduplicated-branches -Wlogical-op>
  $<$<BOOL:${KREL_WERROR}>:-Werror>)

if(KREL_SANITIZE)
  # Reports end the process with SIGABRT like every other internal error.
  target_compile_options(krel_options INTERFACE
    -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(krel_options INTERFACE -fsanitize=address,undefined)
endif()

if(KREL_COVERAGE)
  add_library(krel_flush_counters OBJECT ${CMAKE_SOURCE_DIR}/cmake/flushCounters.cpp)
  target_compile_options(krel_options INTERFACE -fprofile-arcs -ftest-coverage)
  target_link_options(krel_options INTERFACE --coverage -Wl,--wrap=_exit,--wrap=fexecve)
  target_link_libraries(krel_options INTERFACE
    $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:$<TARGET_OBJECTS:krel_flush_counters>>)
endif()
