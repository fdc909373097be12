# Stands for an OpenCV of another kind: of the version FAKE_OPENCV_VERSION, and with all modules in
# one library, FAKE_OPENCV_WORLD.
set(OpenCV_VERSION ${FAKE_OPENCV_VERSION})
set(OpenCV_INCLUDE_DIRS ${FAKE_OPENCV_INCLUDE_DIRS})
if(NOT TARGET opencv_world)
  add_library(opencv_world SHARED IMPORTED)
  set_target_properties(
    opencv_world PROPERTIES IMPORTED_LOCATION "${FAKE_OPENCV_WORLD}" INTERFACE_INCLUDE_DIRECTORIES
                                                                     "${OpenCV_INCLUDE_DIRS}")
endif()
set(OpenCV_LIBS ${OpenCV_LIBS} opencv_world)
