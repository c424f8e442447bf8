# Renders one example card twice, once as it is and once with its template and
# data written as Gson- and Python-style servers write JSON (tools/escape-json.mjs:
# \u escapes, surrogate pairs, 1.0E7-style numbers), and checks that every
# step's tree is the same, byte for byte.
#
#   cmake -D ROOT=<repo> -D CARD=<name> -D OUT=<folder> [-D DATA=<data file>] -P CheckEscaped.cmake
#
# DATA replaces the card's own data.json (a copy with more to escape).
set(folder ${ROOT}/examples/cards/${CARD})
if(NOT DATA)
  set(DATA ${folder}/data.json)
endif()
get_filename_component(variant ${DATA} NAME_WE)
set(work ${OUT}/${CARD}-${variant})
set(escaped ${work}/escaped-card)
file(REMOVE_RECURSE ${work})
file(MAKE_DIRECTORY ${escaped})
# Pictures are found beside the template.
file(CREATE_LINK ${folder}/images ${escaped}/images SYMBOLIC)

find_program(NODE node REQUIRED)
function(escape_json from to)
  execute_process(COMMAND ${NODE} ${ROOT}/tools/escape-json.mjs ${from} ${to} RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "escape-json failed on ${from}")
  endif()
endfunction()
escape_json(${folder}/template.json ${escaped}/template.json)
escape_json(${DATA} ${escaped}/data.json)

set(options --strict)
foreach(option scenario bridge)
  if(EXISTS ${folder}/${option}.json)
    list(APPEND options --${option} ${folder}/${option}.json)
  endif()
endforeach()
execute_process(COMMAND bash ${ROOT}/tools/mero-preview ${folder}/template.json --data ${DATA} ${options}
                        --out ${work}/plain RESULT_VARIABLE plain_status)
execute_process(COMMAND bash ${ROOT}/tools/mero-preview ${escaped}/template.json --data ${escaped}/data.json
                        ${options} --out ${work}/escaped RESULT_VARIABLE escaped_status)
if(NOT plain_status EQUAL 0 OR NOT escaped_status EQUAL 0)
  message(FATAL_ERROR "the previewer failed on ${CARD} (plain: exit ${plain_status}, escaped: exit ${escaped_status})")
endif()

file(GLOB trees RELATIVE ${work}/plain ${work}/plain/*.tree.json)
file(GLOB escaped_trees RELATIVE ${work}/escaped ${work}/escaped/*.tree.json)
if(NOT trees OR NOT trees STREQUAL escaped_trees)
  message(FATAL_ERROR "${CARD}: the steps differ\n  plain: ${trees}\n  escaped: ${escaped_trees}")
endif()
foreach(tree IN LISTS trees)
  execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${work}/plain/${tree} ${work}/escaped/${tree}
                  RESULT_VARIABLE differs)
  if(differs)
    execute_process(COMMAND diff -u ${work}/plain/${tree} ${work}/escaped/${tree})
    message(FATAL_ERROR "${CARD}: ${tree} differs when the JSON is escaped (diff above)")
  endif()
endforeach()
list(LENGTH trees count)
message(STATUS "${CARD} (${variant}): ${count} step trees alike, plain and escaped")
