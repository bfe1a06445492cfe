# A room is one folder under src/ and one static library, tessellar_<room>. It sees the rooms that it
# names under ROOMS and, through them, those below; a room that includes a header of any other room
# does not link, and `./dev lint` says so before the linker does.

add_library(tessellar_options INTERFACE)
target_compile_options(tessellar_options INTERFACE
    -Wall -Wextra -Wpedantic -Werror -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
    -Wno-missing-field-initializers
    # GCC 12 sees uninitialised members in variants and optionals that hold none, and uses of stop tokens
    # after their last owner is gone.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized -Wno-use-after-free>)
target_compile_definitions(tessellar_options INTERFACE
    QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING)
if(TESSELLAR_SANITIZE)
    target_compile_options(tessellar_options INTERFACE
        -fsanitize=${TESSELLAR_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(tessellar_options INTERFACE -fsanitize=${TESSELLAR_SANITIZE})
endif()

# tessellar_room(<room> SOURCES <file>... [ROOMS <room>...] [LIBRARIES <library>...] [PRECOMPILED <set>|none])
function(tessellar_room room)
    cmake_parse_arguments(ARG "" "PRECOMPILED" "SOURCES;ROOMS;LIBRARIES" ${ARGN})
    add_library(tessellar_${room} STATIC ${ARG_SOURCES})
    target_include_directories(tessellar_${room} PUBLIC ${CMAKE_SOURCE_DIR}/src)
    list(TRANSFORM ARG_ROOMS PREPEND tessellar_)
    target_link_libraries(tessellar_${room} PUBLIC ${ARG_ROOMS} ${ARG_LIBRARIES} PRIVATE tessellar_options)
    if(NOT ARG_PRECOMPILED)
        set(ARG_PRECOMPILED core)
    endif()
    tessellar_use_precompiled(tessellar_${room} ${ARG_PRECOMPILED})
endfunction()

# tessellar_room_tests(<room> SOURCES <file>... [LIBRARIES <library>...])
# One test program for a room; ctest runs its suites as <room>.<suite>.
function(tessellar_room_tests room)
    cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(${room}_tests ${ARG_SOURCES})
    target_link_libraries(${room}_tests PRIVATE
        tessellar_${room} tessellar_test_support ${ARG_LIBRARIES} GTest::gmock tessellar_options)
    tessellar_use_precompiled(${room}_tests tests)
    add_dependencies(all_tests ${room}_tests)
    set(suites ${CMAKE_CURRENT_BINARY_DIR}/suites.cmake)
    file(GENERATE OUTPUT ${suites} CONTENT
        "set(TEST_ROOM ${room})\nset(TEST_PROGRAM $<TARGET_FILE:${room}_tests>)
include(${CMAKE_SOURCE_DIR}/cmake/TestSuites.cmake)\n")
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES ${suites})
endfunction()
