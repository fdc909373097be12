# Runs the program on its own scans, on files, and on input that it must turn down. Wants PROGRAM,
# MAKE_BAD_SCANS and FOLDER, a folder to work in.

include(${CMAKE_CURRENT_LIST_DIR}/program_checks.cmake)

# Wants every one of the other arguments matched by the report.
function(calibrate arguments)
  run(text "" ${arguments})
  foreach(expected IN LISTS ARGN)
    if(NOT text MATCHES "${expected}")
      message(SEND_ERROR "'${arguments}' does not tell '${expected}':\n${text}")
    endif()
  endforeach()
endfunction()

# Every method finds the tilt that its scan was made with, and the registration the motion.
set(small_residuals " [0-9.]+ % +0\\.0[0-9]+ +0\\.[0-3][0-9]+ ")
calibrate(
  ""
  "heights, lowest +plate with blocks +3\\.34 +3\\.34 +119\\.[0-9]+ +${small_residuals}"
  "heights, mean +plate with blocks +3\\.34 +3\\.34 +119\\.[0-9]+ +${small_residuals}"
  "regions +plate with blocks +3\\.34 +3\\.34 +119\\.[0-9]+ +${small_residuals}"
  "unbroken lines +plate with a hole +4\\.12 +4\\.12 +89\\.[0-9]+ +${small_residuals}"
  "ground +shelf over ground +15\\.[23][0-9] +15\\.29 +135\\.[0-9]+ +${small_residuals}"
  "found +(4\\.0|3\\.9)[0-9]+ +-7\\.[45][0-9]+ +(25\\.0|24\\.9)[0-9]+ +1[12]\\.[09][0-9]+ "
  "residual: mean 0\\.0[0-9]+, max 0\\.[12][0-9]+ mm")

calibrate("${scans}/flat.tiff" "heights, mean +file +none found" "regions +file +0\\.00")
calibrate("${scans}/flat.tiff;--region;50;60;50;60" "regions +file +none found")
calibrate("${scans}/range.png;--z-scale;0.01;--noise;0" "residual: mean 0\\.0000, max 0\\.0000")
calibrate("${scans}/wild.tiff")

turn_down("no such file" ${scans}/missing.tiff)
turn_down("no image, or damaged" ${scans}/text.tiff)
turn_down("its pixels are" ${scans}/colour8.png)
turn_down("too small" ${scans}/one_line.tiff)
turn_down("no measurement" ${scans}/holes.tiff)
turn_down("a million units" ${scans}/steep.tiff)
turn_down("--band" --band nan)
turn_down("--noise" --noise -1)
turn_down("--region" --region 1 2 3)
turn_down("the lower end" --region 5 2 3 9)
turn_down("--nonsense" --nonsense)
