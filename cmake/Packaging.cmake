# Where the parts go on "cmake --install", and the Debian package that CPack makes of them.

# The program, and the link to it that stands in its drawer. The drawer is the same in both trees: bin beside share.
if(TARGET solvane)
    install(TARGETS solvane RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endif()
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/install)
file(CREATE_LINK ../../bin/solvane ${SOLVANE_SHARE}/solvane SYMBOLIC)
file(RELATIVE_PATH program /${SOLVANE_INSTALL_SHARE} /${CMAKE_INSTALL_BINDIR}/solvane)
file(CREATE_LINK ${program} ${CMAKE_BINARY_DIR}/install/solvane SYMBOLIC)
install(FILES ${CMAKE_BINARY_DIR}/install/solvane DESTINATION ${SOLVANE_INSTALL_SHARE})

install(DIRECTORY ${SOLVANE_SHARE}/ DESTINATION ${SOLVANE_INSTALL_SHARE}
    REGEX "/share/solvane/(solvane|Tools|C)$" EXCLUDE)

# The drawer commands: one program and a link to it for each name, WBRun and rx. They find share beside their bin.
install(TARGETS amiga wbrun rx RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/install/C)
file(RELATIVE_PATH program /${SOLVANE_INSTALL_SHARE}/C /${CMAKE_INSTALL_BINDIR}/amiga)
foreach(command IN LISTS SOLVANE_COMMANDS)
    file(CREATE_LINK ${program} ${CMAKE_BINARY_DIR}/install/C/${command} SYMBOLIC)
endforeach()
file(RELATIVE_PATH program /${SOLVANE_INSTALL_SHARE}/C /${CMAKE_INSTALL_BINDIR}/wbrun)
file(CREATE_LINK ${program} ${CMAKE_BINARY_DIR}/install/C/WBRun SYMBOLIC)
file(RELATIVE_PATH program /${SOLVANE_INSTALL_SHARE}/C /${CMAKE_INSTALL_BINDIR}/rx)
file(CREATE_LINK ${program} ${CMAKE_BINARY_DIR}/install/C/rx SYMBOLIC)
install(DIRECTORY ${CMAKE_BINARY_DIR}/install/C DESTINATION ${SOLVANE_INSTALL_SHARE})

# Programs do not stand under share: the Tools drawer holds links.
foreach(tool xadunfile conwindow)
    install(TARGETS ${tool} RUNTIME DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/solvane)
    file(RELATIVE_PATH target /${SOLVANE_INSTALL_SHARE}/Tools /${CMAKE_INSTALL_LIBEXECDIR}/solvane/${tool})
    file(CREATE_LINK ${target} ${CMAKE_BINARY_DIR}/install/${tool} SYMBOLIC)
    install(FILES ${CMAKE_BINARY_DIR}/install/${tool} DESTINATION ${SOLVANE_INSTALL_SHARE}/Tools)
endforeach()
install(FILES ${SOLVANE_SHARE}/Tools/jhead ${SOLVANE_SHARE}/Tools/jpegtran
    DESTINATION ${SOLVANE_INSTALL_SHARE}/Tools)

install(DIRECTORY ${CMAKE_BINARY_DIR}/share/icons DESTINATION ${CMAKE_INSTALL_DATADIR})
install(FILES packaging/solvane.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
install(FILES packaging/solvane.metainfo.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo)
install(FILES packaging/solvane.1 packaging/amiga.1 packaging/rx.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES packaging/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/solvane)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME solvane)
set(CPACK_PACKAGE_VENDOR "The Solvane developers")
set(CPACK_PACKAGE_CONTACT "The Solvane developers <solvane@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DESCRIPTION "One tabbed, scriptable window for Amiga files and host files:
volumes and assigns, protection bits and filenotes, icons, tabs, history,
bookmarks, previews and an ARexx port.")
set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libqt6svg6, qt6-translations-l10n, shared-mime-info, jhead, libjpeg-turbo-progs")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "qt6-wayland")
include(CPack)
