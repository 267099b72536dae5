# pelkrin_source_date(VAR SOURCE_DIR)
#
# Sets VAR to the date of the source, YYYY-MM-DD in UTC: SOURCE_DATE_EPOCH
# when it is set (reproducible builds), else the date of the last commit when
# SOURCE_DIR is a git checkout of its own, else the date of SOURCE_DIR's
# CMakeLists.txt (a source package keeps its files' dates). In a checkout,
# a new commit makes the next build configure again, so the date follows it.
#
# As a script: cmake -DSOURCE_DIR=DIR -P SourceDate.cmake prints the date.
function(pelkrin_source_date var dir)
  if(DEFINED ENV{SOURCE_DATE_EPOCH})
    string(TIMESTAMP date "%Y-%m-%d" UTC)
    set(${var} ${date} PARENT_SCOPE)
    return()
  endif()
  find_package(Git QUIET)
  if(GIT_FOUND)
    execute_process(COMMAND ${GIT_EXECUTABLE} -C ${dir} rev-parse --show-toplevel --git-dir
      OUTPUT_VARIABLE git_out ERROR_QUIET RESULT_VARIABLE git_status OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(git_status EQUAL 0)
      string(REPLACE "\n" ";" git_out "${git_out}")
      list(GET git_out 0 top)
      list(GET git_out 1 git_dir)
      file(REAL_PATH "${top}" top)
      file(REAL_PATH "${dir}" real_dir)
    endif()
    if(git_status EQUAL 0 AND top STREQUAL real_dir)
      execute_process(COMMAND ${GIT_EXECUTABLE} -C ${dir} log -1 --format=%ct
        OUTPUT_VARIABLE seconds RESULT_VARIABLE log_status ERROR_QUIET OUTPUT_STRIP_TRAILING_WHITESPACE)
      if(log_status EQUAL 0 AND seconds MATCHES "^[0-9]+$")
        # string(TIMESTAMP) formats SOURCE_DATE_EPOCH when it is set.
        set(ENV{SOURCE_DATE_EPOCH} ${seconds})
        string(TIMESTAMP date "%Y-%m-%d" UTC)
        unset(ENV{SOURCE_DATE_EPOCH})
        if(NOT CMAKE_SCRIPT_MODE_FILE)
          if(NOT IS_ABSOLUTE "${git_dir}")
            set(git_dir "${dir}/${git_dir}")
          endif()
          if(EXISTS "${git_dir}/logs/HEAD")
            set_property(DIRECTORY "${PROJECT_SOURCE_DIR}" APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS "${git_dir}/logs/HEAD")
          endif()
        endif()
        set(${var} ${date} PARENT_SCOPE)
        return()
      endif()
    endif()
  endif()
  file(TIMESTAMP "${dir}/CMakeLists.txt" date "%Y-%m-%d" UTC)
  set(${var} ${date} PARENT_SCOPE)
endfunction()

if(CMAKE_SCRIPT_MODE_FILE STREQUAL CMAKE_CURRENT_LIST_FILE)
  pelkrin_source_date(date "${SOURCE_DIR}")
  message("${date}")
endif()
