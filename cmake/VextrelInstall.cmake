# SPDX-License-Identifier: MIT
# What `cmake --install` puts where, by component:
#   module    vextrel.cti, in a folder of its own for GENICAM_GENTL64_PATH to name
#   extended  vextrel_extended.cti, in another: an application that finds both would list each camera
#             twice
#   program   vextrel, and its manual page
#   samples   the simulated cameras and the sample consumer, in a third
#   config    the ready property files
#   docs      what there is to read, and the licenses of all that the modules consist of
include(GNUInstallDirs)

install(TARGETS vextrel
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/vextrel" COMPONENT module)
install(TARGETS vextrel_extended
  LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}/vextrel-extended" COMPONENT extended)

if(TARGET vextrel_program)
  install(TARGETS vextrel_program RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}" COMPONENT program)
  if(VEXTREL_MANUAL_PAGE)
    install(FILES "${VEXTREL_MANUAL_PAGE}" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1"
      COMPONENT program)
  endif()
endif()

if(TARGET grab)
  set(folder "${CMAKE_INSTALL_LIBDIR}/vextrel-samples")
  install(TARGETS grab simulated_camera simulated_camera_extended
    LIBRARY DESTINATION "${folder}" COMPONENT samples
    RUNTIME DESTINATION "${folder}" COMPONENT samples)
endif()

# On Linux, no variable names the folder for temporary files to all programs.
file(GLOB configs CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/config/*.properties")
foreach(config IN LISTS configs)
  if(NOT WIN32)
    file(READ "${config}" text)
    string(REPLACE "\${TEMP}/" "/tmp/" text "${text}")
    string(REGEX REPLACE "# /?\\$?{?(TEMP}|tmp/)[^\n]*temporary files on Windows[^\n]*\n#[^\n]*The folder must exist\\.\n"
      "# The folder must exist.\n" text "${text}")
    cmake_path(GET config FILENAME name)
    set(config "${PROJECT_BINARY_DIR}/config/${name}")
    file(CONFIGURE OUTPUT "${config}" CONTENT "${text}" @ONLY NEWLINE_STYLE UNIX)
  endif()
  install(FILES "${config}" DESTINATION "${CMAKE_INSTALL_DATADIR}/vextrel" COMPONENT config)
endforeach()

install(FILES LICENSE NOTICE README.md CHANGELOG.md CONTRIBUTING.md SECURITY.md
  DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT docs)
install(FILES "${log4cpp_SOURCE_DIR}/COPYING" RENAME COPYING.log4cpp
  DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT docs)
install(DIRECTORY docs DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT docs
  FILES_MATCHING PATTERN "*.md" PATTERN "*.png")

# The licenses of the libraries that the program consists of, as Debian's packages have them.
if(TARGET vextrel_program)
  foreach(library IN ITEMS CLI11=libcli11-dev fmt=libfmt-dev json=nlohmann-json3-dev
      dygraphs=libjs-dygraphs)
    string(REPLACE "=" ";" library "${library}")
    list(GET library 0 name)
    list(GET library 1 package)
    if(EXISTS "/usr/share/doc/${package}/copyright")
      install(FILES "/usr/share/doc/${package}/copyright" RENAME "COPYING.${name}"
        DESTINATION "${CMAKE_INSTALL_DOCDIR}" COMPONENT docs)
    endif()
  endforeach()
endif()
