# brindle_add_test(<name> SOURCES <files...> LIBS <targets...>)
# One GoogleTest executable per module; each case becomes a CTest test.
find_package(GTest QUIET)
include(GoogleTest)

function(brindle_add_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS;ENV" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} GTest::gtest GTest::gtest_main GTest::gmock brindle_testsupport)
  gtest_discover_tests(${name}
    DISCOVERY_MODE PRE_TEST
    PROPERTIES ENVIRONMENT "${ARG_ENV}")
endfunction()
