# tonaro_bundle(TARGET NAME): a bundle NAME.bundle of the current folder's Resources in lib/tonaro of the build tree, copied
# again when a resource changes. Programs find it beside their own folder, as they do when installed.
function(tonaro_bundle target name)
  set(contents ${Tonaro_BINARY_DIR}/lib/tonaro/${name}.bundle/Contents)
  set(resources ${CMAKE_CURRENT_SOURCE_DIR}/Resources)
  file(GLOB_RECURSE files CONFIGURE_DEPENDS RELATIVE ${resources} ${resources}/*)
  foreach(file IN LISTS files)
    if(file STREQUAL "Info.plist")
      set(copy ${contents}/${file})
    else()
      set(copy ${contents}/Resources/${file})
    endif()
    add_custom_command(OUTPUT ${copy} DEPENDS ${resources}/${file}
      COMMAND ${CMAKE_COMMAND} -E copy ${resources}/${file} ${copy} COMMENT "" VERBATIM)
    list(APPEND copies ${copy})
  endforeach()
  add_custom_target(${target} DEPENDS ${copies})
endfunction()
