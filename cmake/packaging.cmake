# What CPack makes of the installation: an archive, and a package for Debian where the program uses the
# system's libraries. scripts/package makes them all.

if(NOT PROJECT_IS_TOP_LEVEL)
    return()
endif()

set(VEXBIND_MAINTAINER "vexbind team <vexbind@example.org>" CACHE STRING
    "Name and address of whom the package's users can write to")

set(CPACK_PACKAGE_VENDOR "vexbind team")
set(CPACK_PACKAGE_CONTACT "${VEXBIND_MAINTAINER}")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "converter of RSD, PLY and MAT models to TMD files")
set(CPACK_PACKAGE_DESCRIPTION "\
vexbind reads RSD descriptions, each naming a PLY geometry file, a MAT
material file and TIM textures, turns every polygon, line and sprite into
one primitive packet, and writes all objects into one binary TMD file.")
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)

string(TOLOWER "${CMAKE_SYSTEM_NAME}-${CMAKE_SYSTEM_PROCESSOR}" CPACK_SYSTEM_NAME)
set(CPACK_PACKAGE_FILE_NAME "vexbind-${PROJECT_VERSION}-${CPACK_SYSTEM_NAME}")
set(CPACK_GENERATOR TGZ)
if(VEXBIND_STATIC)
    string(APPEND CPACK_PACKAGE_FILE_NAME "-static")
elseif(CMAKE_SYSTEM_NAME STREQUAL "Linux")
    list(APPEND CPACK_GENERATOR DEB)
endif()

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION graphics)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

# What Debian's packages have of their own is added to the installed files before they are packed.
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_LIST_DIR}/debian/complete.cmake")

include(CPack)
