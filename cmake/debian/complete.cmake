# Run by CPack between installing and packing: makes the files of the .deb what Debian's users, and lintian,
# look for. Other packages stay as they are installed.

if(NOT CPACK_GENERATOR STREQUAL "DEB")
    return()
endif()

set(root "${CPACK_TEMPORARY_INSTALL_DIRECTORY}")
set(share "${root}/usr/share")
set(doc "${share}/doc/vexbind")

# compress(FILE): the same bytes whenever it is done.
function(compress file)
    execute_process(COMMAND gzip -9nf "${file}" COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# Debian's zsh looks in a folder of its own.
file(MAKE_DIRECTORY "${share}/zsh/vendor-completions")
file(RENAME "${share}/zsh/site-functions/_vexbind" "${share}/zsh/vendor-completions/_vexbind")
file(REMOVE_RECURSE "${share}/zsh/site-functions")

file(GLOB_RECURSE pages "${share}/man/*.[1-9]")
foreach(page IN LISTS pages)
    compress("${page}")
endforeach()

# The name of the compiler is of no use to them.
execute_process(COMMAND strip --remove-section=.comment --remove-section=.note "${root}/usr/bin/vexbind"
    COMMAND_ERROR_IS_FATAL ANY)

# The newest entry of CHANGELOG.md, in Debian's form: its items, folded anew.
set(in_newest FALSE)
set(items "")
file(STRINGS "${doc}/CHANGELOG.md" lines)
foreach(line IN LISTS lines)
    if(line MATCHES "^## .([0-9.]+). - ([0-9-]+)$")
        if(in_newest)
            break()
        endif()
        set(in_newest TRUE)
        set(date "${CMAKE_MATCH_2}")
    elseif(in_newest AND line MATCHES "^- (.*)$")
        string(APPEND items "\n${CMAKE_MATCH_1}")
    elseif(in_newest AND line MATCHES "^  (.*)$")
        string(APPEND items " ${CMAKE_MATCH_1}")
    endif()
endforeach()
execute_process(COMMAND date -u -R -d "${date}" OUTPUT_VARIABLE date OUTPUT_STRIP_TRAILING_WHITESPACE
    COMMAND_ERROR_IS_FATAL ANY)
file(WRITE "${doc}/changelog" "${items}\n")
execute_process(COMMAND sed "1d; s/^/  * /" "${doc}/changelog" COMMAND fold -s -w 76 OUTPUT_VARIABLE folded
    COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "\n([^ \n])" "\n    \\1" folded "${folded}")
string(REGEX REPLACE " +\n" "\n" folded "${folded}")
file(WRITE "${doc}/changelog"
    "vexbind (${CPACK_PACKAGE_VERSION}) bookworm; urgency=medium\n\n${folded}\n"
    " -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
compress("${doc}/changelog")

file(COPY "${CMAKE_CURRENT_LIST_DIR}/copyright" DESTINATION "${doc}")
