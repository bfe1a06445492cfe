# A room is one folder under src/ and one static library, tessellar_<room>. It sees the rooms that it
# names under ROOMS and, through them, those below. These arrows stand here alone: an include of any other room
# does not link, and `./dev lint` says so before the linker does.

add_library(tessellar_options INTERFACE)
target_compile_options(tessellar_options INTERFACE
    -Wall -Wextra -Wpedantic $<$<BOOL:${TESSELLAR_WERROR}>:-Werror> -Wshadow -Wnon-virtual-dtor
    -Woverloaded-virtual -Wcast-align
    -Wno-missing-field-initializers
    # GCC 12 sees uninitialised members in variants and optionals that hold none, and uses of stop tokens
    # after their last owner is gone.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized -Wno-use-after-free>
    # A capture may be there to keep something alive, or to have it destroyed on another thread.
    $<$<CXX_COMPILER_ID:Clang,AppleClang>:-Wno-unused-lambda-capture>
    # g++ 12's own std::stable_sort, once its header comes precompiled, is no system's to clang.
    $<$<CXX_COMPILER_ID:Clang>:-Wno-deprecated-declarations>)
target_compile_definitions(tessellar_options INTERFACE
    QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_URL_CAST_FROM_STRING)
if(TESSELLAR_SANITIZE)
    target_compile_options(tessellar_options INTERFACE
        -fsanitize=${TESSELLAR_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(tessellar_options INTERFACE -fsanitize=${TESSELLAR_SANITIZE})
endif()

# Programs that people run are hardened, first of all the one that runs as root. Debug builds are left alone:
# fortified functions need optimisation and blind the sanitizers.
if(NOT TESSELLAR_SANITIZE)
    set(optimised "$<NOT:$<CONFIG:Debug>>")
    target_compile_options(tessellar_options INTERFACE
        $<${optimised}:-fstack-protector-strong> $<${optimised}:-ftrivial-auto-var-init=zero>
        $<${optimised}:-U_FORTIFY_SOURCE> $<${optimised}:-D_FORTIFY_SOURCE=2>)
    if(NOT APPLE) # where programs are so without asking; all is compiled with -fPIC, for Qt
        target_link_options(tessellar_options INTERFACE $<${optimised}:-pie> $<${optimised}:-Wl,-z,relro,-z,now>)
    endif()
endif()

# tessellar_arrows(<folder> <room>...): sources in src/<folder> may include these rooms and those below them.
function(tessellar_arrows folder)
    set_property(GLOBAL APPEND PROPERTY TESSELLAR_FOLDERS ${folder})
    set_property(GLOBAL APPEND PROPERTY TESSELLAR_BELOW_${folder} ${ARGN})
endfunction()

# Writes them for `./dev lint`: a line for each folder, with all that lies below it.
function(tessellar_write_arrows)
    get_property(folders GLOBAL PROPERTY TESSELLAR_FOLDERS)
    list(REMOVE_DUPLICATES folders)
    set(lines)
    foreach(folder IN LISTS folders)
        get_property(below GLOBAL PROPERTY TESSELLAR_BELOW_${folder})
        set(seen)
        while(below)
            list(POP_FRONT below room)
            if(NOT room IN_LIST seen)
                list(APPEND seen ${room})
                get_property(further GLOBAL PROPERTY TESSELLAR_BELOW_${room})
                list(APPEND below ${further})
            endif()
        endwhile()
        list(JOIN seen " " seen)
        string(APPEND lines "${folder}: ${seen}\n")
    endforeach()
    file(WRITE ${CMAKE_BINARY_DIR}/arrows "${lines}")
endfunction()

# tessellar_room(<room> SOURCES <file>... [ROOMS <room>...] [LIBRARIES <library>...] [PRECOMPILED <set>|none])
function(tessellar_room room)
    cmake_parse_arguments(ARG "" "PRECOMPILED" "SOURCES;ROOMS;LIBRARIES" ${ARGN})
    add_library(tessellar_${room} STATIC ${ARG_SOURCES})
    target_include_directories(tessellar_${room} PUBLIC ${CMAKE_SOURCE_DIR}/src)
    tessellar_arrows(${room} ${ARG_ROOMS})
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
