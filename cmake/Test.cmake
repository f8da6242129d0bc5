# tonaro_test(NAME LINK targets...): a test program of every source of the current folder.
function(tonaro_test name)
  cmake_parse_arguments(arg "" "" "LINK;DEFINITIONS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  add_executable(${name} ${sources})
  target_include_directories(${name} PRIVATE ${Tonaro_SOURCE_DIR}/tests)
  target_compile_definitions(${name} PRIVATE ${arg_DEFINITIONS})
  target_link_libraries(${name} PRIVATE tonaro_options ${arg_LINK} GTest::gmock_main)
  tonaro_precompile(${name})
  gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60
    PROPERTIES TIMEOUT 120 ENVIRONMENT "LSAN_OPTIONS=suppressions=${Tonaro_SOURCE_DIR}/cmake/lsan.supp")
endfunction()
