# Installs the documents, and the samples as examples.

# The newest entry of the changes is about the version that is built.
set(changelog "${CMAKE_CURRENT_SOURCE_DIR}/CHANGELOG.md")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${changelog}")
file(STRINGS "${changelog}" newest_entry REGEX "^## \\[[0-9]" LIMIT_COUNT 1)
if(NOT newest_entry MATCHES "^## \\[([0-9.]+)\\] - ([0-9][0-9][0-9][0-9]-[0-9][0-9]-[0-9][0-9])$")
    message(FATAL_ERROR "The newest entry of CHANGELOG.md is no version and date: ${newest_entry}")
endif()
if(NOT CMAKE_MATCH_1 VERSION_EQUAL PROJECT_VERSION)
    message(FATAL_ERROR "The newest entry of CHANGELOG.md is ${CMAKE_MATCH_1}, the program ${PROJECT_VERSION}")
endif()

include(GNUInstallDirs)
install(FILES README.md CHANGELOG.md DESTINATION "${CMAKE_INSTALL_DOCDIR}")
install(DIRECTORY docs DESTINATION "${CMAKE_INSTALL_DOCDIR}")
install(DIRECTORY samples/ DESTINATION "${CMAKE_INSTALL_DOCDIR}/examples")
