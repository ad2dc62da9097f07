# TMD files as targets of a CMake project.
#
#   vexbind_add_tmd(TARGET name OUTPUT file.tmd RSDS word...
#       [OPTIONS word...] [WORKING_DIRECTORY folder] [DEPENDS file...] [EXCLUDE_FROM_ALL])
#
# Adds the target `name`, which makes the TMD by the command line
#
#   vexbind -o file.tmd OPTIONS... RSDS...
#
# RSDS are RSD names, with `-s`, `-sa` and `-t` between them where they are wanted, and ARG and PRJ files. Names
# count from WORKING_DIRECTORY, by default the current source folder; OUTPUT counts from the current binary
# folder. An ID list, by a PRJ file or by `-id`, comes to lie beside the TMD.
#
# The target depends on the program, on the words, and on every ARG, PRJ, RSD, PLY, MAT and TIM file behind
# them; DEPENDS adds others. ARG, PRJ and RSD files are read when the project is configured, which an edit of
# one of them repeats, as does a file that comes or goes under a name that is tried. So they must be there by
# then: unlike vexbind, this function does not leave out an object whose RSD file is missing. PLY, MAT and TIM
# files that the build itself makes are named in DEPENDS.
#
# A run that fails leaves no TMD and no ID list.
cmake_policy(VERSION 3.25)

include("${CMAKE_CURRENT_LIST_DIR}/vexbindNames.cmake")

# _vexbind_expand(RESULT READ BASE WORD...): the words with ARG and PRJ files taken apart, one level, and the full
# paths of those files.
function(_vexbind_expand result read base)
    set(words)
    set(files)
    set(is_value FALSE)
    foreach(word IN LISTS ARGN)
        _vexbind_check_name("${word}" "OPTIONS or RSDS")
        string(TOLOWER "${word}" lower)
        _vexbind_extension(extension "${word}")
        _vexbind_path(path "${base}" "${word}")
        if(is_value)
            list(APPEND words "${word}")
            set(is_value FALSE)
        elseif(lower STREQUAL "-id")
            list(APPEND words "${word}")
            set(is_value TRUE)
        elseif(NOT extension MATCHES "^(arg|prj)$")
            list(APPEND words "${word}")
        elseif(NOT EXISTS "${path}" OR IS_DIRECTORY "${path}")
            message(FATAL_ERROR "vexbind_add_tmd: there is no file \"${path}\"")
        elseif(extension STREQUAL "arg")
            _vexbind_read_arg(inner "${path}")
            list(APPEND words ${inner})
            list(APPEND files "${path}")
        else()
            _vexbind_read_prj(inner "${path}")
            list(APPEND words -id "${word}" ${inner})
            list(APPEND files "${path}")
        endif()
    endforeach()
    set(${result} "${words}" PARENT_SCOPE)
    set(${read} "${files}" PARENT_SCOPE)
endfunction()

# _vexbind_object(RESULT BASE WORD): the full path of the RSD file that WORD means, which must be there.
function(_vexbind_object result base word)
    _vexbind_extension(extension "${word}")
    if(extension MATCHES "^(arg|prj)$")
        message(FATAL_ERROR "vexbind_add_tmd: \"${word}\" stands where only an RSD name can: projects come first, "
            "and no file of words names another one")
    endif()
    _vexbind_find_rsd(rsd "${base}" "${word}")
    if(rsd STREQUAL "" OR IS_DIRECTORY "${rsd}")
        message(FATAL_ERROR "vexbind_add_tmd: there is no RSD file for \"${word}\" in \"${base}\"")
    endif()
    # The word stays as it is written where it means the same file by its full name: the object is named by it.
    _vexbind_path(full "${base}" "${word}")
    foreach(each IN ITEMS "${full}" "${rsd}")
        _vexbind_find_rsd(again "/" "${each}")
        if(again STREQUAL rsd)
            set(_vexbind_tried "${_vexbind_tried}" PARENT_SCOPE)
            set(${result} "${each};${rsd}" PARENT_SCOPE)
            return()
        endif()
    endforeach()
    message(FATAL_ERROR "vexbind_add_tmd: vexbind cannot find \"${rsd}\" by its full name: rename it")
endfunction()

# _vexbind_read_words(WORDS RSDS PROJECT BASE WORD...): the words as they work in any folder, the full paths of
# the RSD files among them, and that of the project by which IDs are given.
function(_vexbind_read_words result rsds project base)
    set(words)
    set(objects)
    set(first_project "")
    set(leading TRUE)
    set(values 0)
    set(is_project FALSE)
    foreach(word IN LISTS ARGN)
        string(TOLOWER "${word}" lower)
        if(values GREATER 0)
            math(EXPR values "${values} - 1")
            if(is_project)
                _vexbind_path(word "${base}" "${word}")
                if(first_project STREQUAL "")
                    set(first_project "${word}")
                    list(APPEND _vexbind_tried "${word}")
                endif()
                set(is_project FALSE)
            endif()
        elseif(NOT word MATCHES "^-")
            set(leading FALSE)
            _vexbind_object(found "${base}" "${word}")
            list(GET found 0 word)
            list(GET found 1 rsd)
            list(APPEND objects "${rsd}")
        elseif(leading AND lower STREQUAL "-o")
            message(FATAL_ERROR "vexbind_add_tmd: the TMD is named by OUTPUT, not by -o")
        elseif(leading AND lower STREQUAL "-id")
            set(values 1)
            set(is_project TRUE)
        elseif(lower STREQUAL "-t")
            set(values 3)
        elseif(lower MATCHES "^-(s|sa)$" OR (leading AND lower STREQUAL "-sc"))
            set(values 1)
        endif()
        list(APPEND words "${word}")
    endforeach()
    set(_vexbind_tried "${_vexbind_tried}" PARENT_SCOPE)
    set(${result} "${words}" PARENT_SCOPE)
    set(${rsds} "${objects}" PARENT_SCOPE)
    set(${project} "${first_project}" PARENT_SCOPE)
endfunction()

# _vexbind_header(RESULT TMD): the name of the ID list of a TMD.
function(_vexbind_header result tmd)
    get_filename_component(name "${tmd}" NAME)
    string(REGEX REPLACE "[.][^.]*$" "" name "${name}")
    if(NOT name MATCHES "[.]")
        string(APPEND name ".h")
    endif()
    set(${result} "${name}" PARENT_SCOPE)
endfunction()

# _vexbind_watch(PATH...): configures anew when a file comes or goes there.
function(_vexbind_watch)
    list(REMOVE_DUPLICATES ARGN)
    set(patterns)
    foreach(path IN LISTS ARGN)
        string(REGEX REPLACE "([*?])" "[\\1]" path "${path}")
        list(APPEND patterns "${path}")
    endforeach()
    if(patterns)
        file(GLOB present CONFIGURE_DEPENDS ${patterns})
    endif()
endfunction()

# _vexbind_write_job(FILE OUTPUT HEADER WORDS READ): what vexbindRun.cmake has to do. The files that are read stand
# there too, so that one more or less of them makes the job a new one.
function(_vexbind_write_job file output header words read)
    set(text "# Written by vexbind_add_tmd, read by vexbindRun.cmake.\n")
    foreach(path IN LISTS read)
        string(APPEND text "# reads ${path}\n")
    endforeach()
    string(APPEND text "set(output [==[${output}]==])\nset(header [==[${header}]==])\nset(words)\n")
    foreach(word IN LISTS words)
        string(APPEND text "list(APPEND words [==[${word}]==])\n")
    endforeach()
    set(old "")
    if(EXISTS "${file}")
        file(READ "${file}" old)
    endif()
    if(NOT text STREQUAL old)
        file(WRITE "${file}" "${text}")
    endif()
endfunction()

function(vexbind_add_tmd)
    cmake_parse_arguments(PARSE_ARGV 0 tmd "EXCLUDE_FROM_ALL" "TARGET;OUTPUT;WORKING_DIRECTORY"
        "RSDS;OPTIONS;DEPENDS")
    foreach(needed IN ITEMS TARGET OUTPUT RSDS)
        if(NOT DEFINED tmd_${needed})
            message(FATAL_ERROR "vexbind_add_tmd: ${needed} is missing")
        endif()
    endforeach()
    if(DEFINED tmd_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "vexbind_add_tmd: what does \"${tmd_UNPARSED_ARGUMENTS}\" belong to?")
    endif()
    if(NOT DEFINED tmd_WORKING_DIRECTORY)
        set(tmd_WORKING_DIRECTORY "${CMAKE_CURRENT_SOURCE_DIR}")
    endif()
    get_filename_component(base "${tmd_WORKING_DIRECTORY}" REALPATH BASE_DIR "${CMAKE_CURRENT_SOURCE_DIR}")
    _vexbind_path(output "${CMAKE_CURRENT_BINARY_DIR}" "${tmd_OUTPUT}")

    set(_vexbind_tried)
    _vexbind_expand(words lists "${base}" ${tmd_OPTIONS} ${tmd_RSDS})
    _vexbind_read_words(words rsds project "${base}" ${words})
    set(read ${lists} ${rsds})
    set(made "${output}")
    set(header "")
    if(NOT project STREQUAL "")
        list(APPEND read "${project}")
        _vexbind_header(header "${output}")
        get_filename_component(folder "${output}" DIRECTORY)
        set(list_path "${folder}/${header}")
        if(list_path STREQUAL output)
            message(FATAL_ERROR "vexbind_add_tmd: the ID list would have the name of the TMD, ${header}")
        endif()
    endif()
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${lists} ${rsds})
    foreach(rsd IN LISTS rsds)
        _vexbind_read_rsd(parts "${rsd}")
        list(APPEND read ${parts})
    endforeach()
    list(REMOVE_DUPLICATES read)
    _vexbind_watch(${_vexbind_tried})

    # What is not there, or no file, is left to vexbind to complain about.
    set(depends)
    foreach(path IN LISTS read)
        if(EXISTS "${path}" AND NOT IS_DIRECTORY "${path}")
            list(APPEND depends "${path}")
        endif()
    endforeach()
    foreach(path IN LISTS tmd_DEPENDS)
        list(APPEND depends "${path}")
    endforeach()
    set(run "${CMAKE_CURRENT_FUNCTION_LIST_DIR}/vexbindRun.cmake")
    set(job "${CMAKE_CURRENT_BINARY_DIR}${CMAKE_FILES_DIRECTORY}/${tmd_TARGET}.vexbind.cmake")
    _vexbind_write_job("${job}" "${output}" "${header}" "${words}" "${read}")

    set(byproducts)
    if(NOT header STREQUAL "")
        set(byproducts BYPRODUCTS "${list_path}")
    endif()
    file(RELATIVE_PATH shown "${CMAKE_BINARY_DIR}" "${output}")
    add_custom_command(
        OUTPUT "${output}"
        ${byproducts}
        COMMAND "${CMAKE_COMMAND}" "-DPROGRAM=$<TARGET_FILE:vexbind::vexbind>" "-DJOB=${job}" -P "${run}"
        DEPENDS "$<TARGET_FILE:vexbind::vexbind>" "${job}" "${run}" ${depends}
        COMMENT "Converting to ${shown}"
        VERBATIM
    )
    set(all ALL)
    if(tmd_EXCLUDE_FROM_ALL)
        set(all)
    endif()
    add_custom_target(${tmd_TARGET} ${all} DEPENDS "${output}")
endfunction()
