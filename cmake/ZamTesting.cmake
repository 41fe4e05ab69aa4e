# zam_add_test(NAME name SOURCES a.cpp ... [LIBS lib ...] [X11] [LABELS l ...])
#
# One GoogleTest executable, its cases discovered into CTest. Display tests
# get the label x11, so `ctest -LE x11` runs everything that needs no X server.
include(GoogleTest)

function(zam_add_test)
  cmake_parse_arguments(T "X11" "NAME" "SOURCES;LIBS;LABELS" ${ARGN})
  add_executable(${T_NAME} ${T_SOURCES})
  if(T_X11)
    target_link_libraries(${T_NAME} PRIVATE zamui zamtestsupport GTest::gtest_main GTest::gmock ${T_LIBS})
    list(APPEND T_LABELS x11)
  else()
    target_link_libraries(${T_NAME} PRIVATE zamcore zamtestsupport GTest::gtest_main GTest::gmock ${T_LIBS})
  endif()
  gtest_discover_tests(${T_NAME}
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
    PROPERTIES LABELS "${T_LABELS}"
    DISCOVERY_TIMEOUT 60)
endfunction()
