# Where an installed Quennet keeps its files, and the Debian packages made from them: `quennet`
# for users and `quennet-devshop` for development.
include(GNUInstallDirs)

set(QUENNET_DATA "${PROJECT_SOURCE_DIR}/data")

install(FILES "${QUENNET_DATA}/app.quennet.Quennet.desktop"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/applications" COMPONENT app)
install(FILES "${QUENNET_DATA}/app.quennet.Quennet.metainfo.xml"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo" COMPONENT app)
install(FILES "${QUENNET_DATA}/icons/app.quennet.Quennet.svg"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/scalable/apps" COMPONENT app)
install(FILES "${QUENNET_DATA}/icons/app.quennet.Quennet-symbolic.svg"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/icons/hicolor/symbolic/apps" COMPONENT app)

# Debian wants a copyright and a changelog in each package's documentation folder; a native
# package, as ours are, names its changelog changelog.gz.
foreach(component app devshop)
    set(package quennet)
    if(component STREQUAL "devshop")
        set(package quennet-devshop)
    endif()
    install(FILES "${QUENNET_DATA}/debian/copyright"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${package}" COMPONENT ${component})
    set(changelog "${CMAKE_BINARY_DIR}/package/${package}/changelog.gz")
    file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/package/${package}")
    add_custom_command(OUTPUT "${changelog}"
        COMMAND gzip -9 -n -c "${QUENNET_DATA}/debian/changelog" > "${changelog}"
        DEPENDS "${QUENNET_DATA}/debian/changelog" VERBATIM)
    add_custom_target(quennet_changelog_${component} ALL DEPENDS "${changelog}")
    install(FILES "${changelog}"
        DESTINATION "${CMAKE_INSTALL_DATADIR}/doc/${package}" COMPONENT ${component})
endforeach()

# Man pages go in compressed, as Debian policy has them.
function(quennet_install_man page component)
    get_filename_component(name "${page}" NAME)
    set(compressed "${CMAKE_BINARY_DIR}/package/man/${name}.gz")
    file(MAKE_DIRECTORY "${CMAKE_BINARY_DIR}/package/man")
    add_custom_command(OUTPUT "${compressed}"
        COMMAND gzip -9 -n -c "${page}" > "${compressed}" DEPENDS "${page}" VERBATIM)
    add_custom_target(quennet_man_${name} ALL DEPENDS "${compressed}")
    install(FILES "${compressed}" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1" COMPONENT ${component})
endfunction()

quennet_install_man("${QUENNET_DATA}/man/quennet.1" app)
quennet_install_man("${QUENNET_DATA}/man/quennetctl.1" app)
quennet_install_man("${QUENNET_DATA}/man/quennet-helper.1" app)
quennet_install_man("${PROJECT_SOURCE_DIR}/devshop/quennet-devshop.1" devshop)

# A call on the session bus starts Quennet when it isn't running.
install(FILES "${PROJECT_BINARY_DIR}/data/dbus/app.quennet.Quennet.service"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/dbus-1/services" COMPONENT app)
install(FILES "${QUENNET_DATA}/dbus/app.quennet.Quennet.Automation.xml"
    "${QUENNET_DATA}/dbus/app.quennet.Quennet.Session.xml"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/dbus-1/interfaces" COMPONENT app)
install(FILES "${QUENNET_DATA}/completion/quennetctl.bash" RENAME quennetctl
    DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions" COMPONENT app)
install(FILES "${QUENNET_DATA}/completion/_quennetctl"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/zsh/vendor-completions" COMPONENT app)
install(FILES "${QUENNET_DATA}/completion/quennetctl.fish"
    DESTINATION "${CMAKE_INSTALL_DATADIR}/fish/vendor_completions.d" COMPONENT app)

install(TARGETS quennet quennet-helper quennetctl RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT app)
# The views, loaded at the first of them; found there by the program.
install(TARGETS quennet_views_module LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/quennet" COMPONENT app)
install(TARGETS quennet-devshop RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT devshop)

# The HEIC decoder, which quennet loads at the first HEIC file from the folder it was built for.
# The shared-library scan reads it too, so libheif stays among the package's dependencies.
install(TARGETS quennet-heic LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/quennet" COMPONENT app)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quennet)
set(CPACK_PACKAGE_VENDOR "The Quennet team")
set(CPACK_PACKAGE_CONTACT "The Quennet team <team@quennet.app>")
set(CPACK_PACKAGE_VERSION "${PROJECT_VERSION}")
# Each package has its own synopsis, the first line of its description.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGE_HOMEPAGE_URL "https://quennet.app")
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL app devshop)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_APP_PACKAGE_NAME quennet)
set(CPACK_DEBIAN_DEVSHOP_PACKAGE_NAME quennet-devshop)
set(CPACK_DEBIAN_DEVSHOP_PACKAGE_SECTION devel)
# The first line is the synopsis; CPack indents the rest.
set(CPACK_DEBIAN_APP_DESCRIPTION "wallpaper packs from the Quennet shop on every display
Quennet lives in the tray and puts the wallpaper packs bought in the Quennet
shop on the desktop: a different wallpaper on each display, light and dark
and time-of-day pictures, scheduled shuffling, a wallpaper for Do Not Disturb
and scripting over D-Bus.")
set(CPACK_DEBIAN_DEVSHOP_DESCRIPTION "development shop for Quennet
A small HTTPS shop service on the loopback interface with sample wallpaper
packs, for developing and testing Quennet without the real shop.")
# Loaded at run time, so no shared-library scan finds them: the views need their QML modules,
# event sounds libcanberra, opened at the first one, and download checks libcrypto (libssl3).
set(CPACK_DEBIAN_APP_PACKAGE_DEPENDS
    "libcanberra0, libssl3, qml6-module-qtquick, qml6-module-qtquick-controls, qml6-module-qtquick-layouts, qml6-module-qtquick-window, qml6-module-qtquick-templates, qml6-module-qtqml-workerscript, qml6-module-qtquick-dialogs, qt6-qpa-plugins")
# The event sounds reach PulseAudio or PipeWire through its plugin, from the freedesktop theme.
set(CPACK_DEBIAN_APP_PACKAGE_RECOMMENDS
    "gnome-keyring | kwalletmanager | keepassxc, xwallpaper, libcanberra-pulse, sound-theme-freedesktop")
set(CPACK_DEBIAN_APP_PACKAGE_SUGGESTS "heif-gdk-pixbuf")
include(CPack)
