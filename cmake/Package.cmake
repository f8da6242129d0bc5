# What the libraries stand on, and what they are installed as: a CMake package and files for pkg-config, both relative to
# where they lie, so that an installed tree can be moved.

# tonaro_package(NAME modules...): a package that pkg-config knows, as PkgConfig::NAME.
function(tonaro_package name)
  pkg_check_modules(${name} REQUIRED IMPORTED_TARGET GLOBAL ${ARGN})
  set_property(GLOBAL PROPERTY TONARO_PACKAGE_${name} "${ARGN}")
endfunction()

# tonaro_component(NAME LIBRARIES targets... INCLUDE folder [NEEDS components...] [PACKAGES names...])
#
# Libraries that are installed and found together: `find_package(Tonaro COMPONENTS NAME)`, `pkg-config tonaro-name`.
# LIBRARIES stand in the order in which a linker wants them; INCLUDE is the folder of include/tonaro that they are used
# with.
function(tonaro_component name)
  cmake_parse_arguments(arg "" "INCLUDE" "LIBRARIES;NEEDS;PACKAGES" ${ARGN})
  install(TARGETS ${arg_LIBRARIES} EXPORT Tonaro-${name} DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
  install(EXPORT Tonaro-${name} NAMESPACE Tonaro:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Tonaro
    COMPONENT development)
  set(flags "")
  foreach(library IN LISTS arg_LIBRARIES)
    target_include_directories(${library} INTERFACE $<INSTALL_INTERFACE:include/tonaro/${arg_INCLUDE}>)
    get_target_property(type ${library} TYPE)
    if(type STREQUAL "STATIC_LIBRARY")
      string(APPEND flags " -l${library}")
    endif()
  endforeach()
  tonaro_remember_component(${name} "${arg_NEEDS}" "${arg_PACKAGES}")
  tonaro_pkg_config(${name} ${arg_INCLUDE} "${arg_NEEDS}" "${arg_PACKAGES}" "${flags}")
endfunction()

# tonaro_headers_of(NAME FOLDER): installs the public headers below FOLDER as include/tonaro/NAME. One that includes a
# library which stands behind its folder, or another header that does, is none of them.
function(tonaro_headers_of name folder)
  file(GLOB_RECURSE headers RELATIVE ${folder} CONFIGURE_DEPENDS ${folder}/*.h)
  set(hidden "<(cairo|fontconfig|hb|jpeglib|liburing|pango|pixman|plist|png|pugixml|unicode|xcb|xkbcommon)")
  set(before -1)
  list(LENGTH headers count)
  while(NOT before EQUAL count)
    set(before ${count})
    foreach(header IN LISTS headers)
      file(STRINGS ${folder}/${header} lines REGEX "^ *# *include *(${hidden})")
      if(lines)
        list(REMOVE_ITEM headers ${header})
        string(REPLACE "." "[.]" pattern ${header})
        string(APPEND hidden "|\"${pattern}\"")
      endif()
    endforeach()
    list(LENGTH headers count)
  endwhile()
  foreach(header IN LISTS headers)
    cmake_path(GET header PARENT_PATH place)
    install(FILES ${folder}/${header} DESTINATION include/tonaro/${name}/${place} COMPONENT development)
  endforeach()
endfunction()

# The lines of the table that TonaroConfig.cmake looks its components up in.
function(tonaro_remember_component name needs packages)
  set(lines "set(_Tonaro_${name}_needs ${needs})\nset(_Tonaro_${name}_packages ${packages})\n")
  foreach(package IN LISTS packages)
    get_property(modules GLOBAL PROPERTY TONARO_PACKAGE_${package})
    string(APPEND lines "set(_Tonaro_${package}_modules ${modules})\n")
  endforeach()
  set_property(GLOBAL APPEND_STRING PROPERTY TONARO_COMPONENTS "${lines}")
endfunction()

function(tonaro_pkg_config name include needs packages libraries)
  string(TOLOWER ${name} file)
  set(requires "")
  foreach(need IN LISTS needs)
    string(TOLOWER ${need} need)
    list(APPEND requires tonaro-${need})
  endforeach()
  foreach(package IN LISTS packages)
    get_property(modules GLOBAL PROPERTY TONARO_PACKAGE_${package})
    list(APPEND requires ${modules})
  endforeach()
  list(JOIN requires " " requires)
  file(RELATIVE_PATH up ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
  string(REGEX REPLACE "/$" "" up "${up}")
  configure_file(${Tonaro_SOURCE_DIR}/cmake/tonaro.pc.in ${Tonaro_BINARY_DIR}/pkgconfig/tonaro-${file}.pc @ONLY)
  install(FILES ${Tonaro_BINARY_DIR}/pkgconfig/tonaro-${file}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development)
endfunction()

# tonaro_install_config(): the file that find_package reads; after the last component.
function(tonaro_install_config)
  get_property(TONARO_COMPONENTS GLOBAL PROPERTY TONARO_COMPONENTS)
  configure_file(${Tonaro_SOURCE_DIR}/cmake/TonaroConfig.cmake.in ${Tonaro_BINARY_DIR}/TonaroConfig.cmake @ONLY)
  write_basic_package_version_file(${Tonaro_BINARY_DIR}/TonaroConfigVersion.cmake COMPATIBILITY SameMinorVersion)
  install(FILES ${Tonaro_BINARY_DIR}/TonaroConfig.cmake ${Tonaro_BINARY_DIR}/TonaroConfigVersion.cmake
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Tonaro COMPONENT development)
endfunction()
