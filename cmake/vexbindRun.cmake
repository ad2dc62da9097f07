# Converts models by a job that vexbind_add_tmd has written, in a folder of its own: the TMD and the ID list
# come to their places when they are whole, and a run that fails leaves neither.
#   cmake -DPROGRAM=path -DJOB=file -P vexbindRun.cmake
# The job sets
#   words   the words of the command line, behind "-o" and its name
#   output  the path of the TMD
#   header  the name of the ID list, which goes beside the TMD; empty without one
include("${JOB}")

get_filename_component(name "${output}" NAME)
get_filename_component(folder "${output}" DIRECTORY)
set(made "${name}")
if(NOT header STREQUAL "")
    list(APPEND made "${header}")
endif()

set(work "${JOB}.run")
file(REMOVE_RECURSE "${work}")
file(MAKE_DIRECTORY "${work}" "${folder}")
execute_process(
    COMMAND "${PROGRAM}" -o "${name}" ${words}
    WORKING_DIRECTORY "${work}"
    RESULT_VARIABLE status
)

set(missing)
foreach(each IN LISTS made)
    if(NOT EXISTS "${work}/${each}")
        list(APPEND missing "${each}")
    endif()
endforeach()
if(NOT status STREQUAL "0" OR missing)
    foreach(each IN LISTS made)
        file(REMOVE "${folder}/${each}")
    endforeach()
    file(REMOVE_RECURSE "${work}")
    if(status STREQUAL "0")
        message(FATAL_ERROR "${name}: vexbind wrote no ${missing}")
    endif()
    message(FATAL_ERROR "${name}: vexbind ended with status ${status}")
endif()

# The TMD comes last: where it is, everything is.
list(REVERSE made)
foreach(each IN LISTS made)
    file(RENAME "${work}/${each}" "${folder}/${each}")
endforeach()
file(REMOVE_RECURSE "${work}")
