# cmake -DLUPDATE=<tool> -DSOURCES=<folder> [-DINTO=<folder>] -P UpdateTranslations.cmake
#
# Brings each translation up to the sources. With INTO a copy of it there, and fails where that is another
# file than the one in the tree, or a text in it has no translation.
file(GLOB languages ${SOURCES}/translations/*.ts)
foreach(language IN LISTS languages)
    set(file ${language})
    if(INTO)
        get_filename_component(name ${language} NAME)
        set(file ${INTO}/${name})
        configure_file(${language} ${file} COPYONLY)
    endif()
    # Texts::noop() marks a text in a table, as QT_TR_NOOP() does.
    execute_process(
        COMMAND ${LUPDATE} -silent -no-obsolete -locations none -tr-function-alias QT_TR_NOOP+=noop
            ${SOURCES} -extensions cpp,h,mm,qml -ts ${file}
        RESULT_VARIABLE status ERROR_VARIABLE said)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "${said}")
    endif()
    if(INTO)
        file(READ ${language} before)
        file(READ ${file} after)
        if(NOT before STREQUAL after)
            message(SEND_ERROR "${name} lacks texts of the sources, or has others: ./dev translate brings it up to them")
        endif()
        string(REGEX MATCH "<message[^<]*<source>([^<]*)</source>[^<]*(<comment>[^<]*</comment>[^<]*)?<translation type=\"unfinished\"" unfinished "${after}")
        if(unfinished)
            message(SEND_ERROR "${name} has no translation of “${CMAKE_MATCH_1}”")
        endif()
    endif()
endforeach()
