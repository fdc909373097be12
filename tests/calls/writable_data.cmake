# Fails if the shared library holds writable data of its own. Arguments: objdump, library.
execute_process(
  COMMAND ${objdump} -t ${library}
  OUTPUT_VARIABLE symbols
  RESULT_VARIABLE result)
if(NOT result EQUAL 0)
  message(FATAL_ERROR "${objdump} cannot read ${library}")
endif()

# Data of the compiler's start-up code and processor detection, of <iostream> and of Eigen's cache
# sizes.
set(allowed
    "^(completed\\.0|__dso_handle|__TMC_END__|DW\\.ref\\.__gxx_personality_v0|__cpu_model|__cpu_features2|_ZStL8__ioinit|_ZG?V?ZN5Eigen8internal20manage_caching_sizes.*)$"
)
string(REGEX MATCHALL " O \\.t?(data|bss)[.a-zA-Z]*\t[^\n]+" objects "${symbols}")
list(LENGTH objects count)
if(count EQUAL 0)
  message(FATAL_ERROR "${library} has no symbols to check")
endif()
set(found)
foreach(object IN LISTS objects)
  string(REGEX REPLACE ".*[ \t]" "" name "${object}")
  if(NOT object MATCHES "\\.data\\.rel\\.ro" AND NOT name MATCHES "${allowed}")
    list(APPEND found ${name})
  endif()
endforeach()
if(found)
  message(FATAL_ERROR "writable data: ${found}")
endif()
message("no writable data except for what is allowed, in ${count} objects")
