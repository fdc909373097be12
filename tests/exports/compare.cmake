# Compares what the shared library exports with the list of exported functions, both ways.
# Arguments: nm, library, list.
execute_process(
  COMMAND ${nm} -D --defined-only -C ${library}
  OUTPUT_VARIABLE symbols
  RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${nm} cannot read ${library}")
endif()

# A line is "address kind name"; lists are split at semicolons, which no signature holds.
string(REGEX REPLACE "(^|\n)[0-9a-f]+ [A-Za-z] " "\\1" symbols "${symbols}")
string(REGEX MATCHALL "[^\n]+" exported "${symbols}")
file(STRINGS ${list} expected)

set(unlisted ${exported})
list(REMOVE_ITEM unlisted ${expected})
set(lost ${expected})
list(REMOVE_ITEM lost ${exported})
list(LENGTH exported exported_count)
list(LENGTH expected expected_count)
foreach(symbol IN LISTS unlisted)
  message("exported but not in ${list}:\n  + ${symbol}")
endforeach()
foreach(symbol IN LISTS lost)
  message("in ${list} but not exported:\n  - ${symbol}")
endforeach()
if(unlisted OR lost OR NOT exported_count EQUAL expected_count)
  message(FATAL_ERROR "${exported_count} symbols are exported, ${expected_count} are listed")
endif()
message("${exported_count} functions are exported, as listed")
