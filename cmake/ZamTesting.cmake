# zam_add_test(NAME name SOURCES a.cpp ... [LIBS lib ...] [X11] [LABELS l ...] [TIMEOUT s])
#
# One GoogleTest executable, its cases discovered into CTest. Display tests
# get the label x11, so `ctest -LE x11` runs everything that needs no X server.
#
# Every case runs in a scratch directory of the build tree, never in the
# checkout, with TMPDIR in the build tree too, so what a test writes (or a
# broken guard deletes) stays there. A case that hangs fails after
# ZAM_TEST_TIMEOUT seconds; a program that needs longer passes TIMEOUT and
# says why where it does.
include(GoogleTest)

set(ZAM_TEST_TIMEOUT 60)
set(ZAM_TEST_SCRATCH ${CMAKE_BINARY_DIR}/test-scratch)
set(ZAM_TEST_TMPDIR ${CMAKE_BINARY_DIR}/tmp)
file(MAKE_DIRECTORY ${ZAM_TEST_SCRATCH} ${ZAM_TEST_TMPDIR})

function(zam_add_test)
  cmake_parse_arguments(T "X11" "NAME;TIMEOUT" "SOURCES;LIBS;LABELS" ${ARGN})
  if(NOT T_TIMEOUT)
    set(T_TIMEOUT ${ZAM_TEST_TIMEOUT})
  endif()
  add_executable(${T_NAME} ${T_SOURCES})
  if(T_X11)
    target_link_libraries(${T_NAME} PRIVATE zamui zamtestsupport GTest::gtest_main GTest::gmock ${T_LIBS})
    list(APPEND T_LABELS x11)
  else()
    target_link_libraries(${T_NAME} PRIVATE zamcore zamtestsupport GTest::gtest_main GTest::gmock ${T_LIBS})
  endif()
  set(properties TIMEOUT ${T_TIMEOUT} ENVIRONMENT "TMPDIR=${ZAM_TEST_TMPDIR}")
  if(T_LABELS)
    list(APPEND properties LABELS "${T_LABELS}")
  endif()
  gtest_discover_tests(${T_NAME}
    WORKING_DIRECTORY ${ZAM_TEST_SCRATCH}
    PROPERTIES ${properties}
    DISCOVERY_TIMEOUT 60)
endfunction()
