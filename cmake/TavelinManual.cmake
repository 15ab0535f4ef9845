# Contents, index and search of the manual: help/tavelin.qch beside the folder of the program, where the viewer looks for
# it. The pages are part of the program as well, so that it can show them without that file.
include_guard()
find_program(TAVELIN_QHELPGENERATOR NAMES qhelpgenerator qhelpgenerator-qt5 REQUIRED)

# tavelin_add_manual(<target>): the target is built with the manual.
function(tavelin_add_manual target)
    set(project ${PROJECT_SOURCE_DIR}/app/resources/help/manual.qhp)
    file(GLOB pages CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/app/resources/help/*.html
        ${PROJECT_SOURCE_DIR}/app/resources/help/images/*.png)
    set(manual ${PROJECT_BINARY_DIR}/help/tavelin.qch)
    add_custom_command(OUTPUT ${manual}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/help
        COMMAND ${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen XDG_RUNTIME_DIR=${PROJECT_BINARY_DIR}
            ${TAVELIN_QHELPGENERATOR} -s ${project} -o ${manual}
        DEPENDS ${project} ${pages} VERBATIM)
    add_custom_target(tavelin_manual DEPENDS ${manual})
    add_dependencies(${target} tavelin_manual)
endfunction()
