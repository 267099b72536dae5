# cmake -DCHECKER=check_includes.cmake -DWORK=DIR -P wrong_includes_are_caught.cmake
#
# The include rules' own test: a small tree with one wrong include of each
# kind, and the design's exception, must give exactly these complaints.
file(REMOVE_RECURSE "${WORK}")
function(source path)
  set(text "")
  foreach(include ${ARGN})
    string(APPEND text "#include \"${include}\"\n")
  endforeach()
  file(WRITE "${WORK}/${path}" "${text}")
endfunction()
foreach(header common/error.h ace/reader.h sff/reader.h views/colour_map.h views/f_read.h views/draw.h
               reads_format/names.h driver/run.h prep/check.h view_tool/modes.h)
  source(src/${header})
endforeach()
source(src/ace/contig.h ../views/colour_map.h ../views/f_read.h "../common/error.h")  # the exception, and allowed
source(src/ace/reader.cpp sff/reader.h)                                   # ace and sff
source(src/sff/walk.cpp ace/reader.h)                                     # the other way
source(src/views/draw.cpp ace/reader.h sff/reader.h)                      # views and sff
source(src/ace/names.cpp views/draw.h)                                    # ace and views, not the exception
source(src/common/error.cpp ace/reader.h driver/run.h)                    # common includes nothing else
source(src/reads_format/names.cpp ace/reader.h sff/reader.h view_tool/modes.h)  # a library and a program
source(src/driver/run.cpp reads_format/names.h prep/check.h)              # one program and another
source(src/view_tool/modes.cpp views/draw.h view_tool/modes.h)             # its own folder and the library
source(tests/views/draw_test.cpp views/draw.h driver/run.h)                # a test, by the folder it mirrors
source(tests/driver/run_test.cpp driver/run.h prep/check.h)
source(tests/e2e/run_test.cpp common/error.h view_tool/modes.h)           # end-to-end tests use the library only
source(tests/fuzz/replay_test.cpp driver/run.h prep/check.h)              # the fuzz targets' replays are free
source(bench/bench.cpp views/draw.h prep/check.h)

execute_process(COMMAND "${CMAKE_COMMAND}" -DROOT=${WORK} -P "${CHECKER}"
  RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
set(expected
  "bench/bench.cpp: #include \"prep/check.h\": code outside the programs includes a program's folder (src/prep)"
  "src/ace/names.cpp: #include \"views/draw.h\": src/ace includes src/views, where it may include common"
  "src/ace/reader.cpp: #include \"sff/reader.h\": src/ace includes src/sff, where it may include common"
  "src/common/error.cpp: #include \"ace/reader.h\": src/common includes src/ace, where it may include nothing else"
  "src/common/error.cpp: #include \"driver/run.h\": a library folder (src/common) includes a program's folder (src/driver)"
  "src/driver/run.cpp: #include \"prep/check.h\": one program's folder (src/driver) includes another's (src/prep)"
  "src/reads_format/names.cpp: #include \"view_tool/modes.h\": a library folder (src/reads_format) includes a program's folder (src/view_tool)"
  "src/sff/walk.cpp: #include \"ace/reader.h\": src/sff includes src/ace, where it may include common"
  "src/views/draw.cpp: #include \"sff/reader.h\": src/views includes src/sff, where it may include common, ace"
  "tests/driver/run_test.cpp: #include \"prep/check.h\": one program's folder (src/driver) includes another's (src/prep)"
  "tests/e2e/run_test.cpp: #include \"view_tool/modes.h\": code outside the programs includes a program's folder (src/view_tool)"
  "tests/views/draw_test.cpp: #include \"driver/run.h\": a library folder (src/views) includes a program's folder (src/driver)")
string(REGEX MATCHALL "[^\n]+: #include [^\n]+" found "${err}")
if(status EQUAL 0)
  message(FATAL_ERROR "the wrong includes passed:\n${err}")
endif()
if(NOT found STREQUAL expected)
  string(REPLACE ";" "\n" found_lines "${found}")
  string(REPLACE ";" "\n" expected_lines "${expected}")
  message(FATAL_ERROR "complaints:\n${found_lines}\n\nexpected:\n${expected_lines}")
endif()
list(LENGTH expected count)
message("all ${count} wrong includes named, the exception and the allowed ones passed")
