# Contents, index and search of the manual: help/tavelin.qch beside the folder of the program, where the viewer looks for
# it. The English pages are part of the program as well, so that it can show them without that file. A folder of pages
# named after a language makes help/tavelin_LANGUAGE.qch and, for the viewer, help/LANGUAGE with the pages.
include_guard()
find_program(TAVELIN_QHELPGENERATOR NAMES qhelpgenerator qhelpgenerator-qt5 REQUIRED)

# tavelin_add_manual(<target>): the target is built with the manual.
function(tavelin_add_manual target)
    set(source ${PROJECT_SOURCE_DIR}/app/resources/help)
    set(help ${PROJECT_BINARY_DIR}/help)
    file(GLOB pictures CONFIGURE_DEPENDS ${source}/images/*.png)
    file(GLOB projects CONFIGURE_DEPENDS ${source}/manual.qhp ${source}/*/manual.qhp)
    set(manuals)
    foreach(project IN LISTS projects)
        get_filename_component(folder ${project} DIRECTORY)
        file(GLOB pages CONFIGURE_DEPENDS ${folder}/*.html)
        if(folder STREQUAL source)
            set(manual ${help}/tavelin.qch)
            set(copy)
        else()
            get_filename_component(language ${folder} NAME)
            set(manual ${help}/tavelin_${language}.qch)
            set(copy COMMAND ${CMAKE_COMMAND} -E rm -rf ${help}/${language}
                COMMAND ${CMAKE_COMMAND} -E make_directory ${help}/${language}
                COMMAND ${CMAKE_COMMAND} -E copy ${pages} ${help}/${language})
        endif()
        add_custom_command(OUTPUT ${manual}
            COMMAND ${CMAKE_COMMAND} -E make_directory ${help}
            ${copy}
            COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR=${PROJECT_BINARY_DIR}
                ${TAVELIN_QHELPGENERATOR} -s ${project} -o ${manual}
            DEPENDS ${project} ${pages} ${pictures} VERBATIM)
        list(APPEND manuals ${manual})
    endforeach()
    add_custom_target(tavelin_manual DEPENDS ${manuals})
    add_dependencies(${target} tavelin_manual)
endfunction()
