# cpack in the build folder packs what cmake --install puts in place;
# cpack --config CPackSourceConfig.cmake packs the source, without build
# folders, version control and scratch files.
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Flowgram reads of an ACE assembly for the Tavrin viewer, and its contig views")
set(CPACK_GENERATOR TGZ)
set(CPACK_SOURCE_GENERATOR TGZ)
# The patterns below are written to CPack's configuration as they stand.
set(CPACK_VERBATIM_VARIABLES YES)
set(CPACK_SOURCE_PACKAGE_FILE_NAME "${PROJECT_NAME}-${PROJECT_VERSION}-source")
string(REGEX REPLACE "([][+.*()^$?|\\])" "\\\\\\1" source_dir_pattern "${PROJECT_SOURCE_DIR}")
set(CPACK_SOURCE_IGNORE_FILES
  # version control, and folders of editors and language servers
  "/\\.git/" "/\\.git$" "/\\.cache/" "/\\.vscode/" "/\\.idea/"
  # build folders: the scripts' out/, build*/ and, wherever they are, the
  # files CMake and CPack leave in a build folder
  "^${source_dir_pattern}/out/" "^${source_dir_pattern}/build[^/]*/" "/_CPack_Packages/" "/CMakeFiles/"
  "/CMakeCache\\.txt$" "/compile_commands\\.json$"
  # scratch files: editors' backups and swap files, patches' leftovers, and
  # Pelkrin's outputs written beside an input (the example's among them)
  "~$" "/\\.#" "\\.sw[op]$" "\\.orig$" "\\.rej$"
  "^${source_dir_pattern}/[^/]*\\.(reads|qdx)$" "^${source_dir_pattern}/example/.*\\.(reads|qdx)$")
# A build folder of another name inside the source.
if(NOT PROJECT_BINARY_DIR STREQUAL PROJECT_SOURCE_DIR)
  string(FIND "${PROJECT_BINARY_DIR}/" "${PROJECT_SOURCE_DIR}/" inside)
  if(inside EQUAL 0)
    string(REGEX REPLACE "([][+.*()^$?|\\])" "\\\\\\1" binary_dir_pattern "${PROJECT_BINARY_DIR}")
    list(APPEND CPACK_SOURCE_IGNORE_FILES "^${binary_dir_pattern}/")
  endif()
endif()
include(CPack)
