# Headers that nearly every source pulls in, compiled once for all rooms: Qt Core and the standard
# library took 3 s of each source. A source still includes what it uses, so that it builds without them
# (-DTESSELLAR_PRECOMPILE=OFF).

option(TESSELLAR_PRECOMPILE "Precompile the headers of Qt, the standard library and GoogleTest" ON)

set(precompiled_core
    <QByteArray> <QCoreApplication> <QDebug> <QHash> <QJsonArray> <QJsonDocument> <QJsonObject> <QList>
    <QMap> <QObject> <QSet> <QString> <QStringList> <QTimer> <QUrl> <QUuid> <QVariant>
    <algorithm> <array> <atomic> <chrono> <condition_variable> <cstdint> <deque> <expected> <functional>
    <list> <map> <memory> <mutex> <optional> <ranges> <span> <stop_token> <string> <string_view> <thread>
    <tuple> <unordered_map> <utility> <variant> <vector>)

# tessellar_precompiled(<name> HEADERS <header>... [LIBRARIES <library>...]): the set of headers that
# targets name as PRECOMPILED <name>.
function(tessellar_precompiled name)
    cmake_parse_arguments(ARG "" "" "HEADERS;LIBRARIES" ${ARGN})
    if(NOT TESSELLAR_PRECOMPILE)
        return()
    endif()
    set(source ${CMAKE_BINARY_DIR}/precompiled/${name}.cpp)
    if(NOT EXISTS ${source})
        file(WRITE ${source} "")
    endif()
    add_library(precompiled_${name} OBJECT ${source})
    target_link_libraries(precompiled_${name} PRIVATE ${ARG_LIBRARIES} tessellar_options)
    set_target_properties(precompiled_${name} PROPERTIES POSITION_INDEPENDENT_CODE ON)
    target_precompile_headers(precompiled_${name} PRIVATE ${ARG_HEADERS})
endfunction()

# tessellar_use_precompiled(<target> <name>)
function(tessellar_use_precompiled target name)
    if(TARGET precompiled_${name})
        target_precompile_headers(${target} REUSE_FROM precompiled_${name})
    endif()
endfunction()

tessellar_precompiled(core HEADERS ${precompiled_core} LIBRARIES Qt6::Core)
if(BUILD_TESTING)
    tessellar_precompiled(tests HEADERS ${precompiled_core} <gmock/gmock.h> <gtest/gtest.h>
        LIBRARIES Qt6::Core GTest::gmock)
endif()
tessellar_precompiled(window HEADERS ${precompiled_core} <QtQml/qqmlprivate.h> <QQmlEngine> <QQuickItem>
    LIBRARIES Qt6::Core Qt6::Qml Qt6::Quick)
