# tonaro_library(NAME [INCLUDE dirs...] [LINK targets...] [USES private targets...])
#
# A static library of every source below the current folder. Sources are listed by pattern, so that a new file can't be
# forgotten. INCLUDE and LINK reach whoever links the library; USES are the libraries it hides. An installed library
# finds its packages under names of its own, so that they can't be mixed up with those of the program that links it.
function(tonaro_library name)
  cmake_parse_arguments(arg "" "" "INCLUDE;LINK;USES" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  list(FILTER sources EXCLUDE REGEX "/main[.]cpp$") # a program's own
  if(NOT sources MATCHES "[.]cpp")
    file(WRITE ${CMAKE_CURRENT_BINARY_DIR}/empty.cpp "")
    list(APPEND sources ${CMAKE_CURRENT_BINARY_DIR}/empty.cpp)
  endif()
  add_library(${name} STATIC ${sources})
  add_library(Tonaro::${name} ALIAS ${name})
  target_include_directories(${name} PUBLIC "$<BUILD_INTERFACE:${arg_INCLUDE}>")
  target_compile_features(${name} PUBLIC cxx_std_20)
  target_link_libraries(${name} PUBLIC ${arg_LINK} PRIVATE $<BUILD_INTERFACE:tonaro_options>)
  foreach(package IN LISTS arg_USES)
    string(REPLACE "PkgConfig::" "Tonaro::" installed ${package})
    target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:${package}> $<INSTALL_INTERFACE:${installed}>)
  endforeach()
  set_target_properties(${name} PROPERTIES POSITION_INDEPENDENT_CODE ON CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  tonaro_precompile(${name})
endfunction()

function(tonaro_precompile name)
  if(TONARO_PCH)
    target_precompile_headers(${name} PRIVATE <algorithm> <array> <cmath> <cstdint> <functional> <map> <memory>
      <optional> <string> <string_view> <utility> <vector>)
  endif()
endfunction()
