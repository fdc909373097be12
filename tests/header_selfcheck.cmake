# Compiles every public header by itself: one generated source each, in one object library.
file(GLOB headers CONFIGURE_DEPENDS RELATIVE ${PROJECT_SOURCE_DIR}/include/scanline
     ${PROJECT_SOURCE_DIR}/include/scanline/*.h)
foreach(header IN LISTS headers)
  set(source ${CMAKE_CURRENT_BINARY_DIR}/header_selfcheck/${header}.cpp)
  file(CONFIGURE OUTPUT ${source} CONTENT "#include <scanline/@header@>\n" @ONLY)
  list(APPEND header_sources ${source})
endforeach()

add_library(scanline_header_selfcheck OBJECT ${header_sources})
target_link_libraries(scanline_header_selfcheck PRIVATE scanline::scanline)
scanline_warnings(scanline_header_selfcheck)
