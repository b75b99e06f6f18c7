# What `cmake --install` puts where, and the Debian package that CPack makes of it.
include(GNUInstallDirs)
set(KORVANE_PACKAGING "${CMAKE_SOURCE_DIR}/packaging")

install(TARGETS korvane)
install(FILES "${KORVANE_PACKAGING}/man/korvane.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")
install(FILES "${KORVANE_PACKAGING}/completions/korvane.bash"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" RENAME korvane)
install(FILES "${KORVANE_PACKAGING}/completions/_korvane"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions")
install(FILES "${KORVANE_PACKAGING}/completions/korvane.fish"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d")
install(FILES "${CMAKE_SOURCE_DIR}/LICENSE" "${CMAKE_SOURCE_DIR}/README.md"
  DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/korvane")

# Without the window there is nothing that these could start.
if(TARGET korvane-app)
  install(TARGETS korvane-app)
  install(FILES "${KORVANE_PACKAGING}/linux/com.ostrel.Korvane.desktop"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
  install(FILES "${KORVANE_PACKAGING}/linux/com.ostrel.Korvane.metainfo.xml"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")
  install(FILES "${KORVANE_PACKAGING}/icons/com.ostrel.Korvane.svg"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps")
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME korvane)
set(CPACK_PACKAGE_VENDOR "Ostrel Limited")
set(CPACK_PACKAGE_CONTACT "Ostrel Limited <support@ostrel.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "disk cleanup that shows why, asks, and can put things back")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_SOURCE_DIR}/cmake/DebianDocuments.cmake")

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# Libraries that are loaded at run time, so that nothing in the program names them: for pictures,
# for the key of the log, and for `korvane update check`. A program that a package installed never
# unpacks a release, so libarchive is not among them.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "libvips42, libsecret-1-0, libcurl4, ca-certificates")
if(TARGET korvane-app)
  # The modules of the window's QML are loaded at run time too; with the last, folders are chosen in
  # the desktop's own dialog.
  string(APPEND CPACK_DEBIAN_PACKAGE_RECOMMENDS ", qml6-module-qtquick, qml6-module-qtquick-controls,"
    " qml6-module-qtquick-layouts, qml6-module-qtquick-templates, qml6-module-qtquick-window,"
    " qml6-module-qtquick-dialogs, qml6-module-qt-labs-folderlistmodel, qml6-module-qtqml,"
    " qml6-module-qtqml-workerscript, qt6-qpa-plugins, qt6-wayland, fonts-inter,"
    " qt6-gtk-platformtheme")
endif()
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "pkexec | sudo")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Korvane finds what can be removed from your home folder: caches, build
products, leftovers of programs that are gone, exact duplicates, pictures
that look alike, large and old files.
.
It shows every candidate with a plain reason and a risk, and removes only
what you selected and confirmed. Removed items go to the Bin, so that they
can be put back. Every removal is written to a tamper-evident log, from
which it can be verified and undone. Nothing runs in the background.")
include(CPack)
