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

# Runs a command that must fail with `message` in its output.
function(run_refused message)
  execute_process(
    COMMAND ${ARGN}
    RESULT_VARIABLE result
    OUTPUT_VARIABLE output
    ERROR_VARIABLE output)
  string(REGEX REPLACE "[ \n]+" " " output "${output}")
  list(JOIN ARGN " " command)
  if(result EQUAL 0 OR NOT output MATCHES "${message}")
    message(FATAL_ERROR "No refusal with '${message}' but ${result}: ${command}\n${output}")
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
    # OpenCV stays where it is.
    string(REPLACE "${WORK}/opencv" "" content "${content}")
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

# Builds the consumer with the flags of pkg-config alone and runs it. They name the library and the
# one of OpenCV, also for a static link.
function(consume_by_pkg_config work prefix opencv)
  set(ENV{PKG_CONFIG_PATH} ${prefix}/${LIBDIR}/pkgconfig)
  execute_process(
    COMMAND ${PKG_CONFIG} --cflags --libs --static scanline
    OUTPUT_VARIABLE flags
    OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX MATCHALL " -l[^ ]+" libraries " ${flags}")
  if(NOT libraries STREQUAL " -lscanline; -l${opencv}")
    message(FATAL_ERROR "pkg-config lists the libraries${libraries}")
  endif()
  separate_arguments(flags UNIX_COMMAND "${flags}")
  separate_arguments(cxx_flags UNIX_COMMAND "${CXX_FLAGS}")
  file(REMOVE_RECURSE ${work})
  file(MAKE_DIRECTORY ${work})
  run(${CXX} -std=c++17 ${cxx_flags} ${consumer_dir}/consumer.cpp -o ${work}/consumer ${flags}
      -idirafter ${consumer_dir}/own)
  run(${CMAKE_COMMAND} -E env LD_LIBRARY_PATH=${prefix}/${LIBDIR} ${work}/consumer)
endfunction()

# Builds the Debian packages, installs them into a folder by a copy of the system's list of
# packages, builds the consumer against them and removes them again. The machine stays as it is, and
# nothing of this needs root.
function(debian_packages work)
  file(REMOVE_RECURSE ${work})
  run(${CPACK} -G DEB --config ${BUILD}/CPackConfig.cmake -C "${CONFIG}" -B ${work}/packages)
  file(GLOB runtime ${work}/packages/libscanline[0-9]*.deb)
  file(GLOB dev ${work}/packages/libscanline-dev_*.deb)

  file(MAKE_DIRECTORY ${work}/root ${work}/bin ${work}/dpkg/info ${work}/dpkg/triggers
       ${work}/dpkg/updates)
  file(COPY /var/lib/dpkg/status DESTINATION ${work}/dpkg)
  # The packages' scripts call ldconfig; the linker's cache of this machine is not theirs.
  file(CREATE_LINK /bin/true ${work}/bin/ldconfig SYMBOLIC)
  set(ENV{PATH} "${work}/bin:$ENV{PATH}:/usr/sbin:/sbin")
  set(dpkg ${DPKG} --force-not-root --force-script-chrootless --admindir=${work}/dpkg
           --instdir=${work}/root --log=/dev/null)
  # Whatever of this name is installed on this machine is not in the folder.
  run(${dpkg} --force-depends --purge libscanline-dev libscanline0)
  run_refused("libscanline-dev depends on libscanline0 \\(= " ${dpkg} --install ${dev})
  run(${dpkg} --install ${runtime} ${dev})
  execute_process(COMMAND ${DPKG} --field ${runtime} Depends OUTPUT_VARIABLE depends)
  if(NOT depends MATCHES "libopencv-core" OR NOT depends MATCHES "libstdc\\+\\+6")
    message(FATAL_ERROR "The runtime package depends on ${depends}")
  endif()
  execute_process(COMMAND ${DPKG} --field ${dev} Depends OUTPUT_VARIABLE depends)
  if(NOT depends MATCHES "libopencv-dev")
    message(FATAL_ERROR "The development package depends on ${depends}")
  endif()

  consume_by_cmake(${work}/find_package -D CMAKE_PREFIX_PATH=${work}/root/usr -D
                   CMAKE_DISABLE_FIND_PACKAGE_Eigen3=ON)
  run(${dpkg} --purge libscanline-dev libscanline0)
  file(GLOB_RECURSE left ${work}/root/*)
  if(left)
    message(FATAL_ERROR "The packages leave ${left}")
  endif()
endfunction()

# Unpacks the source archive, and gives its folder in `unpacked`.
function(source_archive work unpacked)
  file(REMOVE_RECURSE ${work})
  run(${CPACK} --config ${BUILD}/CPackSourceConfig.cmake -B ${work})
  file(GLOB archive ${work}/scanline-*.tar.gz)
  file(ARCHIVE_EXTRACT INPUT ${archive} DESTINATION ${work})
  string(REGEX REPLACE "\\.tar\\.gz$" "" folder ${archive})
  if(EXISTS ${folder}/build OR EXISTS ${folder}/.git)
    message(FATAL_ERROR "${archive} holds more than the source")
  endif()
  set(${unpacked} ${folder} PARENT_SCOPE)
endfunction()

if(STEP STREQUAL "install")
  install_moved(${BUILD} ${prefix})
elseif(STEP STREQUAL "find_package")
  # Users need no Eigen: finding it is made impossible.
  consume_by_cmake(${WORK}/find_package -D CMAKE_PREFIX_PATH=${prefix} -D
                   CMAKE_DISABLE_FIND_PACKAGE_Eigen3=ON)
elseif(STEP STREQUAL "pkg_config")
  get_filename_component(opencv ${OPENCV_LIBRARY} NAME)
  string(REGEX REPLACE "^lib|\\..*" "" opencv ${opencv})
  consume_by_pkg_config(${WORK}/pkg_config ${prefix} ${opencv})
elseif(STEP STREQUAL "debian")
  debian_packages(${WORK}/debian)
elseif(STEP STREQUAL "source")
  source_archive(${WORK}/source unpacked)
  # The preset for packages needs no tool of the developers.
  run(${CMAKE_COMMAND} -S ${unpacked} --preset package -D CMAKE_CXX_COMPILER=${CXX} -D
      CMAKE_DISABLE_FIND_PACKAGE_GTest=ON -D CMAKE_DISABLE_FIND_PACKAGE_benchmark=ON -D
      CMAKE_DISABLE_FIND_PACKAGE_CLI11=ON)

  get_filename_component(world ${OPENCV_LIBRARY} NAME)
  string(REGEX MATCH "\\.[a-z]+" suffix ${world})
  set(world ${WORK}/opencv/libopencv_world${suffix})
  file(MAKE_DIRECTORY ${WORK}/opencv)
  file(CREATE_LINK ${OPENCV_LIBRARY} ${world} SYMBOLIC)
  set(opencv -D OpenCV_DIR=${CMAKE_CURRENT_LIST_DIR}/opencv -D FAKE_OPENCV_WORLD=${world} -D
             "FAKE_OPENCV_INCLUDE_DIRS=${OPENCV_INCLUDE_DIRS}")
  run_refused("scanline needs OpenCV 4 or newer.*is 3\\.4" ${CMAKE_COMMAND} -S ${unpacked} -B
              ${WORK}/opencv/old -D CMAKE_CXX_COMPILER=${CXX} ${opencv} -D
              FAKE_OPENCV_VERSION=3.4.0)
  list(APPEND opencv -D FAKE_OPENCV_VERSION=4.6.0)

  set(SOURCE ${unpacked})
  set(CONFIG None) # Neither optimised nor with debug information: the quickest to compile.
  consume_by_cmake(${WORK}/subproject ${opencv} -D SCANLINE_SUBPROJECT=${unpacked} -D
                   SCANLINE_INSTALL=ON -D BUILD_SHARED_LIBS=OFF -D CMAKE_INSTALL_LIBDIR=${LIBDIR})
  install_moved(${WORK}/subproject ${prefix}-static)
  consume_by_cmake(${WORK}/find_package-static ${opencv} -D CMAKE_PREFIX_PATH=${prefix}-static -D
                   CMAKE_DISABLE_FIND_PACKAGE_Eigen3=ON)
  run_refused("scanline needs OpenCV 4 or newer.*is 3\\.4" ${CMAKE_COMMAND} -S ${consumer_dir} -B
              ${WORK}/opencv/old_consumer -D CMAKE_CXX_COMPILER=${CXX} ${opencv} -D
              FAKE_OPENCV_VERSION=3.4.0 -D CMAKE_PREFIX_PATH=${prefix}-static)
  if(PKG_CONFIG)
    consume_by_pkg_config(${WORK}/pkg_config-static ${prefix}-static opencv_world)
  endif()
else()
  message(FATAL_ERROR "No such step: ${STEP}")
endif()
