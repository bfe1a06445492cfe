# Read by ctest before it runs anything: adds a test <room>.<suite> for each suite of the program TEST_PROGRAM,
# so that a failure names itself while a suite costs no more than one start. The program itself is asked for
# its suites, now: no list can be out of date.

set(environment QT_QPA_PLATFORM=offscreen LC_ALL=C.UTF-8)
execute_process(COMMAND env ${environment} ${TEST_PROGRAM} --gtest_list_tests
    OUTPUT_VARIABLE listed ERROR_QUIET RESULT_VARIABLE status)
if(NOT status EQUAL 0)
    add_test(${TEST_ROOM} ${TEST_PROGRAM}) # Running it says what is wrong.
    return()
endif()
string(REGEX MATCHALL "(^|\n)[^ \n]+\\." suites "${listed}")
foreach(suite IN LISTS suites)
    string(REGEX REPLACE "^\n|\\.$" "" suite "${suite}")
    add_test(${TEST_ROOM}.${suite} ${TEST_PROGRAM} --gtest_filter=${suite}.*)
    set_tests_properties(${TEST_ROOM}.${suite} PROPERTIES
        ENVIRONMENT "${environment}" LABELS ${TEST_ROOM})
endforeach()
