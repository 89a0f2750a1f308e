# What `cmake --install` puts beside the programs and plug-ins, and the Debian package `cpack`
# builds from it: examples and documentation under share/, and for the desktop program a desktop
# entry, an icon in the hicolor theme and MIME types for graph, rule, module and model files.

install(DIRECTORY ${PROJECT_SOURCE_DIR}/examples/ DESTINATION ${CMAKE_INSTALL_DATADIR}/vellum/examples)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs/ DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/vellum)
install(FILES ${PROJECT_SOURCE_DIR}/README.md DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/vellum)

if(VELLUM_BUILD_GUI)
    set(desktop ${PROJECT_SOURCE_DIR}/app/desktop)
    install(FILES ${desktop}/vellum.desktop DESTINATION ${CMAKE_INSTALL_DATADIR}/applications)
    install(FILES ${desktop}/vellum.svg
        DESTINATION ${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps)
    install(FILES ${desktop}/vellum-mime.xml DESTINATION ${CMAKE_INSTALL_DATADIR}/mime/packages
        RENAME vellum.xml)
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vellum)
set(CPACK_PACKAGE_VENDOR "Vellum")
set(CPACK_PACKAGE_CONTACT "Vellum developers <vellum@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "interactive environment for graph transformation in 3D")
set(CPACK_PACKAGE_DESCRIPTION
    "Draw directed graphs with labels and typed attributes in 3D, write graph rules, group them
into Koral modules of transformation units and watch a unit rewrite a graph step by step.
Includes the command-line tool vellum-cli, plug-ins, examples and documentation.")
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
# The libraries' packages, as the linked programs and plug-ins need them.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
    ${PROJECT_BINARY_DIR}/lib ${PROJECT_BINARY_DIR}/lib/vellum/plugins)
# Drawing needs a GL driver and labels the DejaVu font, which no library link names.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libgl1-mesa-dri, fonts-dejavu-core")
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_INSTALL_DIRECTORY vellum)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
include(CPack)
