# Packages by CPack: `cpack -G DEB` writes a runtime and a development package for Debian,
# `cpack --config CPackSourceConfig.cmake` a source archive.
set(CPACK_PACKAGE_CONTACT "The maintainers of scanline <maintainers@scanline.invalid>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "${PROJECT_DESCRIPTION}")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL runtime dev)
set(CPACK_STRIP_FILES ON)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libscanline${SCANLINE_SOVERSION})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_DEV_PACKAGE_NAME libscanline-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
# The CMake package of OpenCV is in libopencv-dev, not in libopencv-core-dev.
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS
    "${CPACK_DEBIAN_RUNTIME_PACKAGE_NAME} (= ${PROJECT_VERSION}), libopencv-dev")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "The shared library.")
set(CPACK_COMPONENT_DEV_DESCRIPTION "The headers, the CMake package and the pkg-config file.")

set(CPACK_SOURCE_GENERATOR TGZ)
set(CPACK_SOURCE_PACKAGE_FILE_NAME scanline-${PROJECT_VERSION})
# What .gitignore ignores, relative to the root wherever the root is.
string(REGEX REPLACE "([][+.*()^$?{}|\\\\])" "\\\\\\1" scanline_root "${PROJECT_SOURCE_DIR}")
set(CPACK_SOURCE_IGNORE_FILES
    "^${scanline_root}/build[^/]*/"
    "^${scanline_root}/[^/]*_out/"
    "^${scanline_root}/\\.git(/|$)"
    "^${scanline_root}/\\.cache/"
    "^${scanline_root}/compile_commands\\.json$"
    "^${scanline_root}/CMakeUserPresets\\.json$"
    "/__pycache__/"
    "\\.egg-info/"
    "\\.swp$"
    "/\\.DS_Store$")

include(CPack)
