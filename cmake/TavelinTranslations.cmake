# Translations: a file translations/tavelin_LANGUAGE.ts is all that a language needs. The program carries them, so that
# it speaks them wherever it lies.
include_guard()

# tavelin_add_translations(<target>): makes :/translations/tavelin_LANGUAGE.qm of every file.
function(tavelin_add_translations target)
    file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/translations/tavelin_*.ts)
    set(folder ${CMAKE_CURRENT_BINARY_DIR}/translations)
    set(names)
    set(made)
    foreach(source IN LISTS sources)
        cmake_path(GET source STEM LAST_ONLY name)
        set(qm ${folder}/${name}.qm)
        add_custom_command(OUTPUT ${qm}
            COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
            COMMAND Qt5::lrelease -silent ${source} -qm ${qm}
            DEPENDS ${source} VERBATIM)
        list(APPEND made ${qm})
        string(APPEND names "        <file>${name}.qm</file>\n")
    endforeach()
    file(CONFIGURE OUTPUT ${folder}/translations.qrc @ONLY CONTENT
        "<RCC version=\"1.0\">\n    <qresource prefix=\"/translations\">\n@names@    </qresource>\n</RCC>\n")
    add_custom_command(OUTPUT ${folder}/qrc_translations.cpp
        COMMAND Qt5::rcc --name translations --output ${folder}/qrc_translations.cpp ${folder}/translations.qrc
        DEPENDS ${made} ${folder}/translations.qrc VERBATIM)
    set_source_files_properties(${folder}/qrc_translations.cpp PROPERTIES
        SKIP_AUTOGEN ON SKIP_UNITY_BUILD_INCLUSION ON SKIP_PRECOMPILE_HEADERS ON)
    target_sources(${target} PRIVATE ${folder}/qrc_translations.cpp)
endfunction()
