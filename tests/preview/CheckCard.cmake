# Renders one example card with the previewer and compares every step's
# tree with the golden copy in tests/preview/golden/<card>/.
#
#   cmake -D ROOT=<repo> -D CARD=<name> -D OUT=<folder> -P CheckCard.cmake
#
# After an intended change, `make goldens` renders every card again and
# replaces the golden trees; review the diff before committing it.
set(golden ${ROOT}/tests/preview/golden/${CARD})
set(produced_dir ${OUT}/${CARD})

execute_process(COMMAND bash ${ROOT}/tools/render-examples.sh ${OUT} ${CARD} RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "the previewer failed on ${CARD} (exit ${status})")
endif()

file(GLOB produced RELATIVE ${produced_dir} ${produced_dir}/*.tree.json)
file(GLOB expected RELATIVE ${golden} ${golden}/*.tree.json)
list(SORT produced)
list(SORT expected)
if(NOT produced STREQUAL expected)
  message(FATAL_ERROR "${CARD}: the steps differ\n  rendered: ${produced}\n  golden:   ${expected}\n"
                      "(make goldens renders them again)")
endif()

set(changed "")
foreach(tree IN LISTS expected)
  execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${golden}/${tree} ${produced_dir}/${tree}
                  RESULT_VARIABLE differs)
  if(differs)
    execute_process(COMMAND diff -u ${golden}/${tree} ${produced_dir}/${tree})
    list(APPEND changed ${tree})
  endif()
endforeach()
if(changed)
  message(FATAL_ERROR "${CARD}: ${changed} differ from the golden trees (diff above; make goldens renders them again)")
endif()
list(LENGTH expected count)
message(STATUS "${CARD}: ${count} step trees match")
