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

# brindle_add_qt_test(<name> SOURCES <files...> LIBS <targets...> FUNCTIONS <test functions...> [ENV <VAR=value...>])
# A Qt Test executable on the real windows; each test function becomes a
# CTest test that runs offscreen.
function(brindle_add_qt_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBS;FUNCTIONS;ENV" ${ARGN})
  find_package(Qt6 REQUIRED COMPONENTS Test Widgets)
  add_executable(${name} ${ARG_SOURCES})
  set_target_properties(${name} PROPERTIES AUTOMOC ON)
  target_link_libraries(${name} PRIVATE ${ARG_LIBS} Qt6::Test Qt6::Widgets)
  set(env QT_QPA_PLATFORM=offscreen ${ARG_ENV})
  foreach(fn IN LISTS ARG_FUNCTIONS)
    add_test(NAME ${name}.${fn} COMMAND ${name} ${fn})
    # A window left open by a failed check would wait for ever: fail instead.
    set_tests_properties(${name}.${fn} PROPERTIES ENVIRONMENT "${env}" TIMEOUT 180)
  endforeach()
endfunction()
