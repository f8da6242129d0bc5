# Switches of the build and what every target compiles with.
option(TONARO_TESTS "Build the tests" ${PROJECT_IS_TOP_LEVEL})
option(TONARO_INSTALL "Make the programs and libraries installable, and packages of them" ${PROJECT_IS_TOP_LEVEL})
option(TONARO_WERROR "Treat warnings as errors" ${PROJECT_IS_TOP_LEVEL})
option(TONARO_PCH "Use a precompiled header of the standard library" ON)
option(TONARO_SANITIZE "Build with the address and undefined-behaviour sanitizers" OFF)
option(TONARO_SANITIZE_THREADS "Build with the thread sanitizer" OFF)
option(TONARO_BENCHMARKS "Build the benchmarks" OFF)
option(TONARO_FUZZ "Build the fuzz targets; needs clang" OFF)

# Everything that targets of this tree share; private to them, so that a program that takes the tree in is left alone.
add_library(tonaro_options INTERFACE)
target_compile_features(tonaro_options INTERFACE cxx_std_20)
target_compile_options(tonaro_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
  -Wnon-virtual-dtor -Woverloaded-virtual -Wformat=2 -Wimplicit-fallthrough -fno-strict-aliasing
  # messages and logs name a source file from the root of the tree, wherever it was built
  -fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=)
if(TONARO_WERROR)
  target_compile_options(tonaro_options INTERFACE -Werror)
endif()
if(TONARO_SANITIZE)
  target_compile_options(tonaro_options INTERFACE -fsanitize=address,undefined,float-cast-overflow
    -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(tonaro_options INTERFACE -fsanitize=address,undefined,float-cast-overflow)
endif()
if(TONARO_SANITIZE_THREADS)
  target_compile_options(tonaro_options INTERFACE -fsanitize=thread -fno-omit-frame-pointer)
  target_link_options(tonaro_options INTERFACE -fsanitize=thread)
endif()
if(TONARO_FUZZ)
  target_compile_options(tonaro_options INTERFACE -fsanitize=fuzzer-no-link) # what is tried tells which ways it took
endif()

find_program(TONARO_CCACHE ccache)
if(TONARO_CCACHE AND PROJECT_IS_TOP_LEVEL AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${TONARO_CCACHE})
endif()
