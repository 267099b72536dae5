# cmake -DROOT=DIR -P check_includes.cmake
#
# Reads every #include "..." in DIR/src, DIR/tests and DIR/bench and fails,
# naming each file and include that breaks the layout:
# - a library folder includes a program's folder;
# - one program's folder includes another's;
# - a library folder includes a library folder below it (src/ace and src/sff
#   never include each other, src/views never includes src/sff, src/common
#   includes no other folder);
# - a test breaks the rule of the folder it mirrors (tests/X stands for
#   src/X); the tests' support, the end-to-end tests and the benchmarks use
#   the library only.
# Every folder of src/ that is not in the library's list is a program's.
# The fuzz targets exercise every program and are not held to these rules.
cmake_minimum_required(VERSION 3.20)
if(NOT ROOT)
  message(FATAL_ERROR "usage: cmake -DROOT=DIR -P check_includes.cmake")
endif()
get_filename_component(ROOT "${ROOT}" ABSOLUTE)

set(library common ace sff views reads_format lenient)
# What each library folder may include besides itself.
set(may_include_common "")
set(may_include_ace common)
set(may_include_sff common)
set(may_include_views common ace)
set(may_include_reads_format common ace sff)
set(may_include_lenient common ace sff)
# The design's one exception: the contig record declares the view
# operations, with two small headers of the views.
set(exceptions
  "src/ace/contig.h -> src/views/colour_map.h"
  "src/ace/contig.h -> src/views/f_read.h")

file(GLOB entries LIST_DIRECTORIES true RELATIVE "${ROOT}/src" "${ROOT}/src/*")
set(programs "")
foreach(entry ${entries})
  if(IS_DIRECTORY "${ROOT}/src/${entry}" AND NOT entry IN_LIST library)
    list(APPEND programs ${entry})
  endif()
endforeach()
set(folders ${library} ${programs})

# The folder of src/ that a file stands in (or stands for, as a test), or
# "library user" for code that may use the library only, or "" for code not
# held to the rules.
function(role_of relative out)
  string(REGEX MATCH "^(src|tests)/([^/]+)/" match "${relative}")
  set(top "${CMAKE_MATCH_1}")
  set(folder "${CMAKE_MATCH_2}")
  if(top STREQUAL "src" OR (top STREQUAL "tests" AND folder IN_LIST folders))
    set(${out} "${folder}" PARENT_SCOPE)
  elseif(relative MATCHES "^tests/fuzz/")
    set(${out} "" PARENT_SCOPE)
  else()
    set(${out} "library user" PARENT_SCOPE)
  endif()
endfunction()

file(GLOB_RECURSE files LIST_DIRECTORIES false
  "${ROOT}/src/*.h" "${ROOT}/src/*.cpp" "${ROOT}/tests/*.h" "${ROOT}/tests/*.cpp"
  "${ROOT}/bench/*.h" "${ROOT}/bench/*.cpp")
list(FILTER files EXCLUDE REGEX "^${ROOT}/tests/data/")
set(broken 0)
set(checked 0)
foreach(file ${files})
  file(RELATIVE_PATH relative "${ROOT}" "${file}")
  role_of("${relative}" role)
  if(role STREQUAL "")
    continue()
  endif()
  get_filename_component(here "${file}" DIRECTORY)
  file(STRINGS "${file}" includes REGEX "^[ \t]*#[ \t]*include[ \t]*\"[^\"]+\"")
  foreach(line ${includes})
    string(REGEX REPLACE "^[ \t]*#[ \t]*include[ \t]*\"([^\"]+)\".*" "\\1" path "${line}")
    # As the compiler finds it: beside the file first, then from src/.
    if(EXISTS "${here}/${path}")
      get_filename_component(target "${here}/${path}" ABSOLUTE)
    elseif(EXISTS "${ROOT}/src/${path}")
      get_filename_component(target "${ROOT}/src/${path}" ABSOLUTE)
    else()
      continue()  # a header of the tests' support, a generated file
    endif()
    file(RELATIVE_PATH target_relative "${ROOT}" "${target}")
    if(NOT target_relative MATCHES "^src/([^/]+)/")
      continue()
    endif()
    set(to "${CMAKE_MATCH_1}")
    math(EXPR checked "${checked} + 1")
    if(to STREQUAL role)
      continue()
    endif()
    set(wrong "")
    if(role STREQUAL "library user")
      if(to IN_LIST programs)
        set(wrong "code outside the programs includes a program's folder (src/${to})")
      endif()
    elseif(role IN_LIST library)
      if(to IN_LIST programs)
        set(wrong "a library folder (src/${role}) includes a program's folder (src/${to})")
      elseif(NOT to IN_LIST may_include_${role})
        if(NOT "${relative} -> ${target_relative}" IN_LIST exceptions)
          string(REPLACE ";" ", " allowed "${may_include_${role}}")
          if(allowed STREQUAL "")
            set(allowed "nothing else")
          endif()
          set(wrong "src/${role} includes src/${to}, where it may include ${allowed}")
        endif()
      endif()
    elseif(to IN_LIST programs)
      set(wrong "one program's folder (src/${role}) includes another's (src/${to})")
    endif()
    if(wrong)
      message("${relative}: #include \"${path}\": ${wrong}")
      math(EXPR broken "${broken} + 1")
    endif()
  endforeach()
endforeach()

if(checked EQUAL 0)
  message(FATAL_ERROR "no include of the project's own headers found under ${ROOT}")
endif()
if(broken GREATER 0)
  message(FATAL_ERROR "${broken} include(s) break the layout")
endif()
string(REPLACE ";" ", " library "${library}")
string(REPLACE ";" ", " programs "${programs}")
message("${checked} includes of the project's headers keep the layout (library: ${library}; programs: ${programs})")
