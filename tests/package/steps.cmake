# One step of the package tests; the arguments are those that CMakeLists.txt beside this file gives.
cmake_minimum_required(VERSION 3.22)

set(consumer_dir ${CMAKE_CURRENT_LIST_DIR}/consumer)
set(prefix ${WORK}/prefix)

# Runs a command, and fails with its output if it fails.
function(run)
  execute_process(
    COMMAND ${ARGV}
    RESULT_VARIABLE result
    OUTPUT_VARIABLE output
    ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    list(JOIN ARGV " " command)
    message("${output}")
    message(FATAL_ERROR "Failed with ${result}, output above: ${command}")
  endif()
endfunction()

# Installs a build tree, moves it to `prefix` and looks for paths of this machine in its text files.
function(install_moved build prefix)
  file(REMOVE_RECURSE ${prefix} ${prefix}-staged)
  run(${CMAKE_COMMAND} --install ${build} --config "${CONFIG}" --prefix ${prefix}-staged)
  file(RENAME ${prefix}-staged ${prefix})
  file(GLOB_RECURSE texts ${prefix}/*.h ${prefix}/*.cmake ${prefix}/*.pc)
  if(NOT texts)
    message(FATAL_ERROR "Nothing was installed under ${prefix}")
  endif()
  foreach(text IN LISTS texts)
    file(READ ${text} content)
    foreach(path IN ITEMS ${SOURCE} ${BUILD} ${WORK})
      string(FIND "${content}" "${path}" at)
      if(NOT at EQUAL -1)
        message(SEND_ERROR "${text} holds the path ${path}, so the installed tree cannot move")
      endif()
    endforeach()
  endforeach()
endfunction()

# Builds the consumer with CMake and runs it. The further arguments go to its configuration.
function(consume_by_cmake work)
  file(REMOVE_RECURSE ${work})
  run(${CMAKE_COMMAND} -S ${consumer_dir} -B ${work} -G ${GENERATOR} -D
      CMAKE_CXX_COMPILER=${CXX} -D "CMAKE_CXX_FLAGS=${CXX_FLAGS}" -D CMAKE_BUILD_TYPE=${CONFIG} -D
      SCANLINE_README=${SOURCE}/README.md ${ARGN})
  run(${CMAKE_COMMAND} --build ${work} --config "${CONFIG}" --parallel 2 --target check)
endfunction()

# Builds the consumer with the flags of pkg-config alone and runs it.
function(consume_by_pkg_config work prefix)
  set(ENV{PKG_CONFIG_PATH} ${prefix}/${LIBDIR}/pkgconfig)
  execute_process(
    COMMAND ${PKG_CONFIG} --cflags --libs scanline
    OUTPUT_VARIABLE flags
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  separate_arguments(flags UNIX_COMMAND "${flags}")
  separate_arguments(cxx_flags UNIX_COMMAND "${CXX_FLAGS}")
  file(REMOVE_RECURSE ${work})
  file(MAKE_DIRECTORY ${work})
  run(${CXX} -std=c++17 ${cxx_flags} ${consumer_dir}/consumer.cpp -o ${work}/consumer ${flags})
  run(${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${prefix}/${LIBDIR} ${work}/consumer)
endfunction()

if(STEP STREQUAL "install")
  install_moved(${BUILD} ${prefix})
elseif(STEP STREQUAL "find_package")
  # Users need no Eigen: finding it is made impossible.
  consume_by_cmake(${WORK}/find_package -D CMAKE_PREFIX_PATH=${prefix} -D
                   CMAKE_DISABLE_FIND_PACKAGE_Eigen3=ON)
elseif(STEP STREQUAL "pkg_config")
  consume_by_pkg_config(${WORK}/pkg_config ${prefix})
elseif(STEP STREQUAL "static")
  set(CONFIG Debug) # The quickest to compile.
  consume_by_cmake(${WORK}/subproject -D SCANLINE_SUBPROJECT=${SOURCE} -D SCANLINE_INSTALL=ON -D
                   BUILD_SHARED_LIBS=OFF -D CMAKE_INSTALL_LIBDIR=${LIBDIR})
  install_moved(${WORK}/subproject ${prefix}-static)
  consume_by_cmake(${WORK}/find_package-static -D CMAKE_PREFIX_PATH=${prefix}-static -D
                   CMAKE_DISABLE_FIND_PACKAGE_Eigen3=ON)
  if(PKG_CONFIG)
    consume_by_pkg_config(${WORK}/pkg_config-static ${prefix}-static)
  endif()
else()
  message(FATAL_ERROR "No such step: ${STEP}")
endif()
