# `cpack -G DEB` makes two packages: tonaro (programs and plug-in) and tonaro-dev (the libraries).
set(TONARO_CONTACT "Tonaro contributors <tonaro@localhost>" CACHE STRING "Who answers for the Debian packages")
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC) # SOURCE_DATE_EPOCH takes its place
foreach(package IN ITEMS tonaro tonaro-dev)
  configure_file(debian/changelog.in ${package}/changelog @ONLY)
  add_custom_command(OUTPUT ${package}/changelog.gz COMMAND ${TONARO_GZIP} -9nkf ${package}/changelog
    DEPENDS ${CMAKE_CURRENT_BINARY_DIR}/${package}/changelog COMMENT "" VERBATIM)
  list(APPEND changelogs ${CMAKE_CURRENT_BINARY_DIR}/${package}/changelog.gz)
endforeach()
add_custom_target(tonaro_changelogs ALL DEPENDS ${changelogs})
foreach(component IN ITEMS programs development)
  set(package ${component})
  string(REPLACE "programs" "tonaro" package ${package})
  string(REPLACE "development" "tonaro-dev" package ${package})
  install(FILES debian/copyright ${CMAKE_CURRENT_BINARY_DIR}/${package}/changelog.gz
    DESTINATION share/doc/${package} COMPONENT ${component})
endforeach()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tonaro)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "test-tone generator with an editor")
set(CPACK_PACKAGE_VENDOR "Tonaro contributors")
set(CPACK_PACKAGE_CONTACT "${TONARO_CONTACT}")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL programs development)
set(CPACK_COMPONENTS_GROUPING IGNORE)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
  WORLD_READ WORLD_EXECUTE)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(CPACK_DEBIAN_PROGRAMS_PACKAGE_NAME tonaro)
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PROGRAMS_DESCRIPTION
"Waveform, start and end frequency, sweep, gain and length of a tone, edited
with sliders on the mel and decibel scales. tonaro plays the tone or writes it
into a sound file; an LV2 plug-in is the same generator in a host. zepos
converts positions between samples, timecode, time, measures and so on.")
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_SHLIBDEPS ON)
# text is measured with exactly these fonts
set(fonts "fonts-dejavu-core, fonts-liberation2")
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_DEPENDS "${fonts}")
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_RECOMMENDS "fonts-vlgothic")
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_SUGGESTS "jackd, lv2-host")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME tonaro-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_DESCRIPTION
"The static libraries under it, and their headers: position formats (ZeKernel),
drawing (ZeUI), sliders and time fields (ZeControls), and the layer of objects,
run loops, text, views and windows that they stand on (platform). CMake finds
them as Tonaro, pkg-config as tonaro-zekernel and so on.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS
  "${fonts}, libcairo2-dev, libicu-dev, libjpeg62-turbo-dev, libpango1.0-dev, libpixman-1-dev, libplist-dev, libpng-dev, libpugixml-dev, liburing-dev, libxcb-shm0-dev, libxcb-xkb-dev, libxcb1-dev, libxkbcommon-x11-dev, pkg-config")
include(CPack)
