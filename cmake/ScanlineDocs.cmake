# The target scanline_docs: the API manual as HTML, in docs/html of the build folder. Missing or mismatching
# documentation is an error.
find_package(Doxygen QUIET)
if(NOT DOXYGEN_FOUND)
  return()
endif()

configure_file(docs/Doxyfile.in ${PROJECT_BINARY_DIR}/docs/Doxyfile @ONLY)
add_custom_target(
  scanline_docs
  COMMAND Doxygen::doxygen ${PROJECT_BINARY_DIR}/docs/Doxyfile
  WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
  COMMENT "Writing the API manual to ${PROJECT_BINARY_DIR}/docs/html"
  VERBATIM)
