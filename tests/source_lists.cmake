# Fails if a source file is missing from the CMakeLists.txt of its folder, and so is never built.
file(GLOB sources RELATIVE ${root} ${root}/src/*/*.cpp ${root}/bench/*.cpp ${root}/examples/*.cpp
     ${root}/examples/*/*.cpp ${root}/tests/test_*.cpp)
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
