# Checks from outside how the program turns down bad input and bad output: by its exit code, by one
# line on the standard error stream, and by leaving no file. Wants PROGRAM and FOLDER, a folder to
# work in, which it empties.

set(out ${FOLDER}/out)
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${out})

function(want_no_files)
  file(GLOB left ${out}/* ${out}/.*)
  if(left)
    message(SEND_ERROR "'${ARGN}' left ${left}")
    file(REMOVE ${left})
  endif()
endfunction()

# Wants an exit code and one line of error that contains `expected`. The rest are the arguments; the
# program may have a command before it in `before`.
function(refuse code expected)
  execute_process(
    COMMAND ${before} ${PROGRAM} ${ARGN}
    WORKING_DIRECTORY ${FOLDER}
    RESULT_VARIABLE result
    OUTPUT_VARIABLE text
    ERROR_VARIABLE errors)
  string(REGEX REPLACE "scanline: warning: [^\n]*\n" "" errors "${errors}")
  string(FIND "${errors}" "${expected}" at)
  if(NOT result STREQUAL "${code}"
     OR at EQUAL -1
     OR NOT errors MATCHES "^scanline: error: [^\n]+\n$")
    message(SEND_ERROR "'${ARGN}' ended with ${result}, not with ${code} and '${expected}': ${text}${errors}")
  endif()
  want_no_files(${ARGN})
endfunction()

function(bytes file)
  execute_process(COMMAND printf ${ARGN} OUTPUT_FILE ${FOLDER}/${file})
endfunction()

function(first_bytes count from to)
  execute_process(COMMAND head -c ${count} ${FOLDER}/${from} OUTPUT_FILE ${FOLDER}/${to})
endfunction()

# A step of 2 on a plane: a profile of 40 samples in each of 40 rows.
string(REPEAT "100,101,100,101," 5 low)
string(REPEAT "98,99,98,99," 5 high)
string(REGEX REPLACE ",$" "\n" row "${low}${high}")
string(REPEAT "${row}" 40 rows)
file(WRITE ${FOLDER}/good.csv "${rows}")
foreach(kind IN ITEMS npy tiff)
  execute_process(
    COMMAND ${PROGRAM} calibrate good.csv --plane none --save-scan good.${kind} --quiet
    WORKING_DIRECTORY ${FOLDER}
    OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
  first_bytes(600 good.${kind} cut.${kind})
endforeach()

# Input.
set(all_outputs --json out/a.json --csv out/a.csv --ply out/a.ply --picture out/a.png --save-scan
                out/a.npy)
bytes(forged.npy "\\223NUMPY\\1\\0\\106\\0{'descr': '<f8', 'fortran_order': False, 'shape': (2000000000, 3)}\\n   ")
bytes(forged.png "\\211PNG\\r\\n\\032\\n\\0\\0\\0\\015IHDR\\0\\0\\200\\0\\0\\0\\200\\0\\020\\0\\0\\0\\0")
file(WRITE ${FOLDER}/forged.ply
     "ply\nformat binary_little_endian 1.0\nobj_info num_cols 40000\nobj_info num_rows 40000\n"
     "element vertex 1600000000\nproperty float x\nproperty float y\nproperty float z\nend_header\n")
file(WRITE ${FOLDER}/prose.csv "Once upon a time,\nthere was a scan.\n")
file(WRITE ${FOLDER}/prose.tiff "Once upon a time,\nthere was a scan.\n")
file(WRITE ${FOLDER}/empty.tiff "")
file(WRITE ${FOLDER}/nan.csv "0,0,nan\n0,1,nan\n1,0,nan\n")
file(WRITE ${FOLDER}/huge.csv "0,0,1e300\n0,1,1e300\n1,0,-1e300\n")
file(WRITE ${FOLDER}/word.csv "0,0,1\n0,1,2\n0,2,three\n")
file(WRITE ${FOLDER}/cloud.pcd "VERSION 0.7\nFIELDS x y z\n")
file(WRITE ${FOLDER}/scan.stl "solid\n")
foreach(command IN ITEMS trace calibrate)
  set(files ${all_outputs})
  if(command STREQUAL calibrate)
    set(files --json out/a.json --save out/plane.json --picture out/a.svg)
  endif()
  refuse(3 "none.tiff: there is no such file" ${command} none.tiff ${files})
  refuse(3 "out: is not a file" ${command} out ${files})
  refuse(3 "empty.tiff: is empty" ${command} empty.tiff ${files})
  refuse(3 "prose.csv: is no table of numbers" ${command} prose.csv ${files})
  refuse(3 "prose.tiff: is no image" ${command} prose.tiff ${files})
  refuse(3 "word.csv:3: expected a number in column 3, found '0,2,three'" ${command} word.csv ${files})
  refuse(3 "cut.npy: its length of 600 bytes does not match" ${command} cut.npy ${files})
  refuse(3 "cut.tiff: is cut short" ${command} cut.tiff ${files})
  refuse(3 "forged.npy: " ${command} forged.npy ${files})
  refuse(3 "forged.png: is cut short" ${command} forged.png ${files})
  refuse(3 "forged.ply: is cut short" ${command} forged.ply ${files})
  refuse(3 "cloud.pcd: is" ${command} cloud.pcd ${files})
  refuse(3 "scan.stl: its extension is none of" ${command} scan.stl ${files})
  refuse(3 "nan.csv: holds no measurement" ${command} nan.csv ${files})
  refuse(3 "huge.csv: holds no measurement" ${command} huge.csv ${files})
endforeach()

# Usage.
refuse(2 "--colour" trace good.csv --colour)
refuse(2 "SCAN" trace)
refuse(2 "--pitch-x and --pitch-y have no effect" trace good.npy --pitch-x 2 ${all_outputs})
refuse(2 "--channels has no effect" trace good.npy --channels zyx ${all_outputs})
refuse(2 "must end in .tiff or .tif or .npy" trace good.csv --save-scan out/a.png)
refuse(2 "must end in .png or .svg" trace good.csv --picture out/a.jpg)
refuse(2 "good.npy: is the input" trace good.npy --save-scan good.npy --overwrite)
refuse(2 "good.npy: is the input" trace good.npy --save-scan out/../good.npy --overwrite)
refuse(2 "is not a number" trace good.csv --pitch-x nan)
refuse(2 "is not a number" trace good.csv --pitch-x 1,5)
refuse(2 "--shape is missing" make profile --output out/a.npy)
refuse(2 "--shape has no effect on 'rods'" make rods --shape box --output out/a.npy)

# Output.
refuse(5 "there is no folder 'nowhere'" trace good.csv --json nowhere/a.json)
refuse(5 "good.npy: exists. Use --overwrite" trace good.csv --save-scan good.npy)
set(before prlimit --fsize=100)
refuse(5 "out/a.npy: cannot be written: File too large" trace good.csv --save-scan out/a.npy)
refuse(5 "out/a.tiff: cannot be written: File too large" trace good.csv --save-scan out/a.tiff)
refuse(5 "out/a.json: cannot be written: File too large" trace good.csv --json out/a.json)
refuse(5 "out/a.ply: cannot be written: File too large" trace good.csv --ply out/a.ply)
refuse(5 "out/a.png: cannot be written" trace good.csv --picture out/a.png)
refuse(5 "out/a.svg: cannot be written" trace good.csv --picture out/a.svg)
set(before "")
execute_process(
  COMMAND ${PROGRAM} trace good.csv --json out/a.json --quiet
  WORKING_DIRECTORY ${FOLDER}
  RESULT_VARIABLE result
  OUTPUT_FILE /dev/full
  ERROR_VARIABLE errors)
if(NOT result STREQUAL "5" OR NOT errors MATCHES "standard output: cannot be written: No space left")
  message(SEND_ERROR "A full disk ended with ${result}: ${errors}")
endif()
want_no_files("a full disk")

# Permissions do not bind root.
execute_process(COMMAND id -u OUTPUT_VARIABLE user OUTPUT_STRIP_TRAILING_WHITESPACE)
if(NOT user STREQUAL "0")
  file(MAKE_DIRECTORY ${FOLDER}/locked)
  file(CHMOD ${FOLDER}/locked PERMISSIONS OWNER_READ OWNER_EXECUTE)
  refuse(5 "no permission to write to the folder 'locked'" trace good.csv --json locked/a.json)
  file(WRITE ${FOLDER}/secret.csv "0,0,5\n")
  file(CHMOD ${FOLDER}/secret.csv PERMISSIONS OWNER_WRITE)
  refuse(3 "secret.csv: cannot be read: no permission" trace secret.csv)
endif()

# Interrupted at any time, before and while files are written. A run in the background of a shell
# would ignore the signal without env.
string(REPEAT "${row}" 10000 rows)
file(WRITE ${FOLDER}/long.csv "${rows}")
set(interrupted 0)
set(whole ${out}/a.csv ${out}/a.json ${out}/a.npy ${out}/a.ply ${out}/a.png)
foreach(signal IN ITEMS INT TERM)
  foreach(seconds IN ITEMS 0.02 0.1 0.2 0.3 0.4 0.5 0.6 0.7 0.8)
    execute_process(
      COMMAND env --default-signal=${signal} timeout --preserve-status -s ${signal} ${seconds} ${PROGRAM}
              trace long.csv ${all_outputs} --quiet
      WORKING_DIRECTORY ${FOLDER}
      RESULT_VARIABLE result
      OUTPUT_QUIET ERROR_QUIET)
    file(GLOB left ${out}/* ${out}/.*)
    if("${left}" STREQUAL "${whole}")
      # The signal came after the last file had its name.
      file(REMOVE ${left})
    elseif(result MATCHES "^(130|143|Interrupted|Terminated|.*nterrupt.*)$")
      math(EXPR interrupted "${interrupted} + 1")
      want_no_files("SIG${signal} after ${seconds} s")
    else()
      message(SEND_ERROR "SIG${signal} after ${seconds} s ended with ${result} and ${left}")
      file(REMOVE ${left})
    endif()
  endforeach()
endforeach()
if(interrupted EQUAL 0)
  message(SEND_ERROR "No run was interrupted")
endif()
