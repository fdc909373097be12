# Fails if a source file is missing from the CMakeLists.txt of its folder, and so is never built.
file(GLOB sources RELATIVE ${root} ${root}/src/*/*.cpp ${root}/bench/*.cpp
     ${root}/tests/test_*.cpp ${root}/program/tests/*.cpp)
if(NOT sources)
  message(FATAL_ERROR "No sources under ${root}")
endif()
foreach(source IN LISTS sources)
  get_filename_component(folder ${source} DIRECTORY)
  get_filename_component(name ${source} NAME)
  file(STRINGS ${root}/${folder}/CMakeLists.txt listed REGEX "(^|[ (])${name}($|[ )])")
  if(NOT listed)
    message(SEND_ERROR "${source} is not listed in ${folder}/CMakeLists.txt: add it there")
  endif()
endforeach()

# The program lists the sources of its folders in one file.
file(GLOB sources RELATIVE ${root}/program ${root}/program/*/*.cpp)
file(READ ${root}/program/CMakeLists.txt listed)
foreach(source IN LISTS sources)
  if(NOT source MATCHES "^tests/" AND NOT listed MATCHES "[ \n]${source}[ \n)]")
    message(SEND_ERROR "program/${source} is not listed in program/CMakeLists.txt: add it there")
  endif()
endforeach()
