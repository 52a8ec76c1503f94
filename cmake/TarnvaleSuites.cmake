# Writes for ctest the suites of a GoogleTest program, each a test. Run after its link:
#   cmake -D PROGRAM=... -D SUITES=FILE -P TarnvaleSuites.cmake
execute_process(COMMAND ${PROGRAM} --gtest_list_tests OUTPUT_VARIABLE list
                COMMAND_ERROR_IS_FATAL ANY TIMEOUT 60)
string(REGEX MATCHALL "\n[A-Za-z0-9_/]+\\." suites "\n${list}")
set(tests)
foreach(suite ${suites})
  string(REGEX REPLACE "[\n.]" "" suite ${suite})
  string(APPEND tests
    "add_test(\"${suite}\" \"${PROGRAM}\" \"--gtest_filter=${suite}.*\")\n"
    "set_tests_properties(\"${suite}\" PROPERTIES LABELS unit TIMEOUT 300)\n")
endforeach()
file(WRITE ${SUITES} "${tests}")
