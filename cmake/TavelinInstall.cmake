# What an installed program consists of, and its Debian package (./dev package).
#
# The program has a folder of its own, lib/tavelin, with the licences beside the folder of the executable, where the
# version dialog looks for them; bin/tavelin is a link to it. The desktop finds the rest in share.
include_guard()
include(GNUInstallDirs)

set(TAVELIN_ID com.korvanda.tavelin)
set(home ${CMAKE_INSTALL_LIBDIR}/tavelin)
set(desktop ${PROJECT_BINARY_DIR}/desktop)
set(packaging ${PROJECT_SOURCE_DIR}/packaging)

# The date of the newest change, so that the same sources give the same package.
execute_process(COMMAND git -C ${PROJECT_SOURCE_DIR} log -1 --format=%ct OUTPUT_VARIABLE seconds
    OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
if(seconds MATCHES "^[0-9]+$")
    set(ENV{SOURCE_DATE_EPOCH} ${seconds})
endif()
string(TIMESTAMP TAVELIN_RELEASE_DATE "%Y-%m-%d" UTC)
string(TIMESTAMP TAVELIN_RELEASE_TIME "%a, %d %b %Y %H:%M:%S +0000" UTC)
unset(ENV{SOURCE_DATE_EPOCH})

configure_file(${packaging}/${TAVELIN_ID}.metainfo.xml.in ${desktop}/${TAVELIN_ID}.metainfo.xml @ONLY)
configure_file(${packaging}/man/tavelin.1.in ${desktop}/tavelin.1 @ONLY)
configure_file(${packaging}/debian/changelog.in ${desktop}/changelog @ONLY)

# Icons, and pages packed as Debian wants them: without name and time of the file.
find_program(TAVELIN_RSVG rsvg-convert REQUIRED)
find_program(TAVELIN_GZIP gzip REQUIRED)
set(icons)
foreach(size IN ITEMS 16 22 24 32 48 64 128 256 512)
    foreach(kind IN ITEMS apps mimetypes)
        if(kind STREQUAL mimetypes)
            set(drawing ${packaging}/icons/${TAVELIN_ID}-project.svg)
            set(name ${TAVELIN_ID}-project.png)
        else()
            set(drawing ${PROJECT_SOURCE_DIR}/app/resources/svg/tavelin.svg)
            if(size LESS 33)
                set(drawing ${PROJECT_SOURCE_DIR}/app/resources/svg/tavelin_small.svg)
            endif()
            set(name ${TAVELIN_ID}.png)
        endif()
        set(icon ${desktop}/icons/hicolor/${size}x${size}/${kind}/${name})
        cmake_path(GET icon PARENT_PATH folder)
        add_custom_command(OUTPUT ${icon}
            COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
            COMMAND ${TAVELIN_RSVG} --width=${size} --height=${size} --output=${icon} ${drawing}
            DEPENDS ${drawing} VERBATIM)
        list(APPEND icons ${icon})
    endforeach()
endforeach()
set(packed)
foreach(pair IN ITEMS "${desktop}/tavelin.1>tavelin.1.gz" "${desktop}/changelog>changelog.gz"
        "${PROJECT_SOURCE_DIR}/CHANGELOG.md>NEWS.gz")
    string(REPLACE ">" ";" pair "${pair}")
    list(GET pair 0 from)
    list(GET pair 1 name)
    add_custom_command(OUTPUT ${desktop}/packed/${name}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${desktop}/packed
        COMMAND ${TAVELIN_GZIP} -9nc ${from} > ${desktop}/packed/${name}
        DEPENDS ${from} VERBATIM)
    list(APPEND packed ${desktop}/packed/${name})
endforeach()
add_custom_target(tavelin_desktop ALL DEPENDS ${icons} ${packed})

# Our libraries are nobody else's, so they stay out of the system's folder.
set(libraries opcuastack uabase uapkicpp uaclientsdk appapi)
set_target_properties(tavelin PROPERTIES INSTALL_RPATH "$ORIGIN/../lib")
set_target_properties(${libraries} PROPERTIES INSTALL_RPATH "$ORIGIN")
install(TARGETS tavelin RUNTIME DESTINATION ${home}/bin)
install(TARGETS ${libraries} LIBRARY DESTINATION ${home}/lib NAMELINK_SKIP)
install(DIRECTORY ${PROJECT_BINARY_DIR}/help/ DESTINATION ${home}/help FILES_MATCHING PATTERN "*.qch" PATTERN "*.html")
install(FILES LICENSE packaging/third-party.txt DESTINATION ${home}/lic)
# the texts that third-party.txt names; each Debian system has them
foreach(license IN ITEMS LGPL-2.1 LGPL-3 Apache-2.0)
    file(CREATE_LINK /usr/share/common-licenses/${license} ${desktop}/${license} SYMBOLIC)
    install(FILES ${desktop}/${license} DESTINATION ${home}/lic)
endforeach()
file(CREATE_LINK ../${home}/bin/tavelin ${desktop}/tavelin SYMBOLIC)
install(FILES ${desktop}/tavelin DESTINATION ${CMAKE_INSTALL_BINDIR})

install(FILES packaging/${TAVELIN_ID}.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES packaging/${TAVELIN_ID}.mime.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages
    RENAME ${TAVELIN_ID}.xml)
install(FILES ${desktop}/${TAVELIN_ID}.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(DIRECTORY ${desktop}/icons DESTINATION ${CMAKE_INSTALL_DATADIR})
install(FILES app/resources/svg/tavelin.svg RENAME ${TAVELIN_ID}.svg
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
install(FILES packaging/icons/${TAVELIN_ID}-project.svg
    DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/mimetypes)
install(FILES ${desktop}/packed/tavelin.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${desktop}/packed/changelog.gz ${desktop}/packed/NEWS.gz packaging/debian/copyright
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/tavelin)
install(FILES packaging/debian/lintian-overrides RENAME tavelin
    DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tavelin)
set(CPACK_PACKAGE_VENDOR Korvanda)
set(CPACK_PACKAGE_CONTACT "Korvanda <support@korvanda.example>")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE
    WORLD_READ WORLD_EXECUTE)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION non-free/net)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})
# loaded while it runs, so that the linker does not know them: the databases of recordings, the pictures of icons,
# the texts of Qt in other languages
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt5sql5-sqlite, libqt5svg5, qttranslations5-l10n, hicolor-icon-theme")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "gnome-keyring | kwalletmanager, shared-mime-info, desktop-file-utils")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION "client to commission, test and diagnose OPC UA servers
Tavelin keeps a project of servers, connects to them with the right endpoint,
security policy and user, and helps to decide about certificates.
.
It browses address spaces, reads and writes attributes, calls methods, watches
values and events, acknowledges alarms, plots history and shows what a server
tells about itself.")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
