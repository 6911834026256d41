# SPDX-License-Identifier: MIT
# What `cpack` makes of the components: scripts/package calls it.
set(CPACK_PACKAGE_NAME vextrel)
set(CPACK_PACKAGE_VENDOR "The Vextrel developers")
set(CPACK_PACKAGE_CONTACT "The Vextrel developers <vextrel@vextrel.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_PACKAGE_DESCRIPTION "Vextrel stands between a camera application and its GenTL producer, logs
 every call, and reports handles that are misused. The program vextrel starts applications with it, and
 reads its logs.")
set(CPACK_RESOURCE_FILE_LICENSE "${PROJECT_SOURCE_DIR}/LICENSE")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME "vextrel-${PROJECT_VERSION}-windows-x64")
else()
  set(CPACK_GENERATOR TGZ DEB)
  set(CPACK_PACKAGE_FILE_NAME "vextrel-${PROJECT_VERSION}-linux-x64")
endif()
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE "")
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE amd64)
set(CPACK_DEBIAN_PACKAGE_SECTION utils)
# Those of Debian 12, which it's built on.
set(CPACK_DEBIAN_PACKAGE_DEPENDS "libc6 (>= 2.36), libgcc-s1 (>= 12), libstdc++6 (>= 12)")
# The same files make the same package, whenever and wherever it's made.
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/EqualTimes.cmake")
set(CPACK_POST_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/SortedArchives.cmake")
set(CPACK_THREADS 1)
# Packing packs what is built, and doesn't build the tests.
set(CMAKE_SKIP_INSTALL_ALL_DEPENDENCY ON)
include(CPack)
