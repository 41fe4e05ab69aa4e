# What `cmake --install` puts where, and the Debian package built from it
# (scripts/package.sh). Paths are those of a Debian system for the prefix
# /usr; with any other prefix they stay below it (README.md, "Install").

# The documentation directory carries the package's name, as Debian wants it.
set(ZAM_PACKAGE_NAME zamclientui)
set(CMAKE_INSTALL_DOCDIR share/doc/${ZAM_PACKAGE_NAME} CACHE PATH "Documentation and examples")
include(GNUInstallDirs)
set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
  OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

# The app-defaults file of the class XZAMClientUI, and beside it its -hidpi
# customization (chosen by "*customization: -hidpi"). For the prefix /usr they go
# to /etc/X11/app-defaults, where Debian's libXt looks (it does not search
# share/X11). Below any other prefix they land in <prefix>/etc/X11/app-defaults,
# which XFILESEARCHPATH has to name. Decided when installing, so
# `cmake --install --prefix /usr` gives the system's place whatever prefix
# the build was configured with.
install(TARGETS ZAMClientUI zam-client RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(CODE "
  if(CMAKE_INSTALL_PREFIX STREQUAL \"/usr\")
    set(zam_app_defaults_dir /etc/X11/app-defaults)
  else()
    set(zam_app_defaults_dir \"\${CMAKE_INSTALL_PREFIX}/etc/X11/app-defaults\")
  endif()
  file(INSTALL DESTINATION \"\${zam_app_defaults_dir}\" TYPE FILE
       FILES \"${PROJECT_SOURCE_DIR}/data/app-defaults/XZAMClientUI\"
             \"${PROJECT_SOURCE_DIR}/data/app-defaults/XZAMClientUI-hidpi\")
")
install(DIRECTORY examples/ DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples)

# Manual pages and the changelog go in gzipped, without a time stamp in the
# gzip header, so the same sources give the same package.
find_program(ZAM_GZIP gzip REQUIRED)
set(zam_gzipped)
foreach(source docs/man/ZAMClientUI.1 docs/man/zam-client.1 packaging/changelog)
  get_filename_component(name ${source} NAME)
  set(target ${PROJECT_BINARY_DIR}/gzipped/${name}.gz)
  add_custom_command(OUTPUT ${target}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_BINARY_DIR}/gzipped
    COMMAND ${ZAM_GZIP} -9 -n -c ${PROJECT_SOURCE_DIR}/${source} > ${target}
    DEPENDS ${PROJECT_SOURCE_DIR}/${source}
    VERBATIM)
  list(APPEND zam_gzipped ${target})
endforeach()
add_custom_target(zamgzipped ALL DEPENDS ${zam_gzipped})
install(FILES ${PROJECT_BINARY_DIR}/gzipped/ZAMClientUI.1.gz ${PROJECT_BINARY_DIR}/gzipped/zam-client.1.gz
  DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${PROJECT_BINARY_DIR}/gzipped/changelog.gz packaging/copyright
  DESTINATION ${CMAKE_INSTALL_DOCDIR})

# The changelog's newest entry and the manual pages' headers must name the
# version of project().
file(STRINGS packaging/changelog zam_changelog_head LIMIT_COUNT 1)
if(NOT zam_changelog_head MATCHES "^${ZAM_PACKAGE_NAME} \\(${PROJECT_VERSION}\\) ")
  message(FATAL_ERROR "packaging/changelog does not start with ${ZAM_PACKAGE_NAME} (${PROJECT_VERSION})")
endif()
foreach(page docs/man/ZAMClientUI.1 docs/man/zam-client.1)
  file(STRINGS ${page} zam_page_header REGEX "^\\.TH ")
  if(NOT zam_page_header MATCHES "\"ZAMClientUI ${PROJECT_VERSION}\"")
    message(FATAL_ERROR "${page}: the .TH line does not name ZAMClientUI ${PROJECT_VERSION}")
  endif()
endforeach()

# ---- the Debian package (cpack -G DEB, run by scripts/package.sh from a
# build configured with the prefix /usr)
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME ${ZAM_PACKAGE_NAME})
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGING_INSTALL_PREFIX ${CMAKE_INSTALL_PREFIX})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DESCRIPTION
  "ZAMClientUI is the part of the ZAM endpoint-management agent that the user
sees. The agent starts it for the logged-in user on the X display and, over a
pipe, asks it to show the actions an administrator has made available (to
take now, cancel or postpone), an action's script and confirmation message,
informational messages and the notice of a quiet period. The user's choices go
back to the agent; the program never runs an action itself.

The package also holds zam-client, a sample client that starts ZAMClientUI and
plays a scripted conversation with it, and example scenarios.")
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION x11)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(ZAM_PACKAGE_MAINTAINER "ZAMClientUI maintainers <maintainers@users.noreply.c-seed-37491b30.example>"
  CACHE STRING "The Maintainer field of the Debian package")
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "${ZAM_PACKAGE_MAINTAINER}")
# Dependencies come from the binaries (dpkg-shlibdeps); scripts/package.sh
# fails unless they name libxaw7 and libxinerama1.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The app-defaults file names the Helvetica of xfonts-100dpi. The fonts are the
# X server's, which may be another machine's, and without them the dialogs
# fall back to the toolkit's default font: recommended, not required.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS xfonts-100dpi)
set(CPACK_STRIP_FILES ON)
# The app-defaults files (the base one and its -hidpi customization) are the
# administrator's to edit: an upgrade keeps changes.
# (scripts/package.sh packages with the prefix /usr.)
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  set(ZAM_APP_DEFAULTS_DIR /etc/X11/app-defaults)
else()
  set(ZAM_APP_DEFAULTS_DIR ${CMAKE_INSTALL_PREFIX}/etc/X11/app-defaults)
endif()
configure_file(packaging/conffiles.in ${PROJECT_BINARY_DIR}/packaging/conffiles @ONLY)
set(CPACK_DEBIAN_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/packaging/conffiles)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
include(CPack)
