# Runs PROGRAM, the suite of PAGE, under EMULATOR with the arguments that the page gives, its files in FOLDER:
# the table must be the one on the page, figures aside.

# The table's rows in `text`, without what differs from run to run. A row without a figure keeps its sign for none.
function(rows_without_figures text rows)
    string(REGEX REPLACE "nLps=[0-9]+,[0-9.e+-]*[0-9],e,[0-9.e+-]*[0-9]," "" text "${text}")
    string(REGEX MATCHALL "\nzyls[^\n]*" found "${text}")
    set(${rows} "${found}" PARENT_SCOPE)
endfunction()

file(READ ${PAGE} page)
if(NOT page MATCHES "\nscript/run ([^\n]*-r([a-z]+) [^\n]*)")
    message(FATAL_ERROR "no command in ${PAGE}")
endif()
set(table ${FOLDER}/${CMAKE_MATCH_2}.csv)
file(MAKE_DIRECTORY ${FOLDER})
execute_process(COMMAND sh -c "exec ${EMULATOR} '${PROGRAM}' ${CMAKE_MATCH_1} '-l${FOLDER}'" OUTPUT_VARIABLE output
                COMMAND_ERROR_IS_FATAL ANY)
file(READ ${table} text)
rows_without_figures("${text}" measured)
rows_without_figures("${page}" promised)
if(NOT measured OR NOT measured STREQUAL promised)
    message(FATAL_ERROR "${output}\nmeasured:${measured}\n\non the page:${promised}")
endif()
