# Install rules: library, headers, CMake package and pkg-config file. Nothing installed holds an
# absolute path, so the installed tree can be moved.
include(CMakePackageConfigHelpers)

install(
  TARGETS scanline
  EXPORT scanlineTargets
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT dev
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev)
# The folder carries the SOVERSION, as the Debian package does, so that two can be installed at once.
install(
  FILES LICENSE
  DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/libscanline${SCANLINE_SOVERSION}
  RENAME copyright
  COMPONENT runtime)
install(
  DIRECTORY include/scanline
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  COMPONENT dev
  FILES_MATCHING
  PATTERN "*.h")

set(scanline_package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/scanline)
install(
  EXPORT scanlineTargets
  NAMESPACE scanline::
  DESTINATION ${scanline_package_dir}
  COMPONENT dev)
configure_package_config_file(
  cmake/scanlineConfig.cmake.in ${PROJECT_BINARY_DIR}/scanlineConfig.cmake
  INSTALL_DESTINATION ${scanline_package_dir} NO_SET_AND_CHECK_MACRO)
# Until 1.0 a minor version may break what links against the one before.
write_basic_package_version_file(${PROJECT_BINARY_DIR}/scanlineConfigVersion.cmake
                                 COMPATIBILITY SameMinorVersion)
install(
  FILES ${PROJECT_BINARY_DIR}/scanlineConfig.cmake
        ${PROJECT_BINARY_DIR}/scanlineConfigVersion.cmake
  DESTINATION ${scanline_package_dir}
  COMPONENT dev)

# The pkg-config file finds its prefix from its own place, unless a directory was given as an
# absolute path.
set(scanline_pc_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH scanline_pc_to_prefix /prefix/${scanline_pc_dir} /prefix)
set(SCANLINE_PC_PREFIX "\${pcfiledir}/${scanline_pc_to_prefix}")
string(REGEX REPLACE "/$" "" SCANLINE_PC_PREFIX ${SCANLINE_PC_PREFIX})
if(IS_ABSOLUTE ${CMAKE_INSTALL_LIBDIR})
  set(SCANLINE_PC_PREFIX ${CMAKE_INSTALL_PREFIX})
endif()
foreach(dir IN ITEMS LIBDIR INCLUDEDIR)
  set(SCANLINE_PC_${dir} ${CMAKE_INSTALL_${dir}})
  if(NOT IS_ABSOLUTE ${CMAKE_INSTALL_${dir}})
    set(SCANLINE_PC_${dir} "\${prefix}/${CMAKE_INSTALL_${dir}}")
  endif()
endforeach()
get_target_property(scanline_type scanline TYPE)
set(SCANLINE_PC_CFLAGS "")
if(scanline_type STREQUAL "STATIC_LIBRARY")
  set(SCANLINE_PC_CFLAGS " -DSCANLINE_STATIC")
endif()
# OpenCV's own pkg-config file is not asked for: it names all of OpenCV's libraries.
foreach(directory IN LISTS OpenCV_INCLUDE_DIRS)
  string(APPEND SCANLINE_PC_CFLAGS " -I${directory}")
endforeach()
set(SCANLINE_PC_LIBS "")
foreach(library IN LISTS SCANLINE_OPENCV_LIBS)
  get_target_property(location ${library} LOCATION)
  get_filename_component(directory ${location} DIRECTORY)
  get_filename_component(file ${location} NAME)
  if(NOT directory IN_LIST CMAKE_CXX_IMPLICIT_LINK_DIRECTORIES)
    string(APPEND SCANLINE_PC_LIBS " -L${directory}")
  endif()
  string(REGEX REPLACE "^lib|\\.(so|a|dylib|dll|lib|[0-9.]+\\.dylib)[.0-9]*$" "" name ${file})
  string(APPEND SCANLINE_PC_LIBS " -l${name}")
endforeach()
configure_file(cmake/scanline.pc.in ${PROJECT_BINARY_DIR}/scanline.pc @ONLY)
install(
  FILES ${PROJECT_BINARY_DIR}/scanline.pc
  DESTINATION ${scanline_pc_dir}
  COMPONENT dev)
