# The library tessellar_version: what platform/version.h says, written anew by each build whose commit is
# another. Run as a script it writes the source.

if(CMAKE_SCRIPT_MODE_FILE)
    execute_process(COMMAND git -C ${SOURCE} describe --always --dirty --match=
        OUTPUT_VARIABLE commit OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
    if(commit)
        set(commit " (${commit})")
    endif()
    file(CONFIGURE OUTPUT ${OUTPUT} @ONLY CONTENT [[
#include "platform/version.h"

namespace tessellar {

std::string versionNumber() { return "@VERSION@"; }
std::string versionText() { return "@VERSION@@commit@"; }

} // namespace tessellar
]])
    return()
endif()

set(version_source ${CMAKE_BINARY_DIR}/version.cpp)
add_custom_target(version_source
    COMMAND ${CMAKE_COMMAND} -DSOURCE=${CMAKE_SOURCE_DIR} -DVERSION=${PROJECT_VERSION}
        -DOUTPUT=${version_source} -P ${CMAKE_CURRENT_LIST_FILE}
    BYPRODUCTS ${version_source})
add_library(tessellar_version STATIC ${version_source})
add_dependencies(tessellar_version version_source)
target_include_directories(tessellar_version PUBLIC ${CMAKE_SOURCE_DIR}/src)
target_link_libraries(tessellar_version PRIVATE tessellar_options)
