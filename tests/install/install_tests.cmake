# The programs this build makes (Pelkrin-bam only with htslib).
set(PELKRIN_BUILT_PROGRAMS Pelkrin Pelkrin-view Pelkrin-prep)
if(TARGET Pelkrin-bam)
  list(APPEND PELKRIN_BUILT_PROGRAMS Pelkrin-bam)
endif()
string(REPLACE ";" " " PELKRIN_BUILT_PROGRAM_WORDS "${PELKRIN_BUILT_PROGRAMS}")

# cmake --install puts the programs in bin/.
add_test(NAME Install.ProgramsGoToBin
  COMMAND sh -c "rm -rf '${CMAKE_CURRENT_BINARY_DIR}/install-check' && '${CMAKE_COMMAND}' --install '${CMAKE_BINARY_DIR}' --prefix '${CMAKE_CURRENT_BINARY_DIR}/install-check' >/dev/null && for program in ${PELKRIN_BUILT_PROGRAM_WORDS}; do test -x '${CMAKE_CURRENT_BINARY_DIR}/install-check/bin/'$program || exit 1; done")

# The installed man pages name the project's version in their headings.
add_test(NAME Install.ManPagesCarryTheVersion
  COMMAND sh -c "rm -rf '${CMAKE_CURRENT_BINARY_DIR}/install-man' && '${CMAKE_COMMAND}' --install '${CMAKE_BINARY_DIR}' --prefix '${CMAKE_CURRENT_BINARY_DIR}/install-man' >/dev/null && for program in ${PELKRIN_BUILT_PROGRAM_WORDS}; do page=$program.1; head -n 1 '${CMAKE_CURRENT_BINARY_DIR}/install-man/share/man/man1/'$page | grep -qF '\"Pelkrin ${PROJECT_VERSION}\"' || exit 1; done")

# And the date of the source.
add_test(NAME Install.ManPagesCarryTheDateOfTheSource
  COMMAND sh ${CMAKE_CURRENT_SOURCE_DIR}/install/check-man-dates.sh ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR}/man)

# cpack names its package after the project's version.
add_test(NAME Package.NamedWithTheVersion
  COMMAND sh -c "rm -rf '${CMAKE_CURRENT_BINARY_DIR}/package-check' && '${CMAKE_CPACK_COMMAND}' --config '${CMAKE_BINARY_DIR}/CPackConfig.cmake' -B '${CMAKE_CURRENT_BINARY_DIR}/package-check' >/dev/null && tar tzf '${CMAKE_CURRENT_BINARY_DIR}/package-check/${CPACK_PACKAGE_NAME}-${PROJECT_VERSION}-${CPACK_SYSTEM_NAME}.tar.gz' | grep -qx '[^/]*/bin/Pelkrin'")
# The source package leaves out build folders and scratch files.
add_test(NAME Package.SourceLeavesOutBuildFoldersAndScratchFiles
  COMMAND sh ${CMAKE_CURRENT_SOURCE_DIR}/install/check-source-package.sh ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR}
    ${CMAKE_CURRENT_BINARY_DIR}/source-package-check)
set_tests_properties(Package.SourceLeavesOutBuildFoldersAndScratchFiles PROPERTIES TIMEOUT 300)
# Each install writes install_manifest.txt in the build folder: one at a time.
set_tests_properties(Install.ProgramsGoToBin Install.ManPagesCarryTheVersion Package.NamedWithTheVersion
  PROPERTIES RESOURCE_LOCK build_folder_install)

# The installed library, headers, CMake package and pelkrin.pc: a program
# outside the tree builds against them both ways and runs.
set(PELKRIN_CONSUMER_FLAGS "")
if(PELKRIN_SANITIZE)
  set(PELKRIN_CONSUMER_FLAGS "-fsanitize=address,undefined")
endif()
add_test(NAME Install.LibraryServesAConsumer
  COMMAND ${CMAKE_COMMAND} -E env CXX=${CMAKE_CXX_COMPILER}
    sh ${CMAKE_CURRENT_SOURCE_DIR}/install/check-install.sh ${CMAKE_BINARY_DIR}
    ${CMAKE_CURRENT_BINARY_DIR}/install-consumer ${CMAKE_CURRENT_SOURCE_DIR}/../example/example.ace 3
    "${PELKRIN_CONSUMER_FLAGS}")
set_tests_properties(Install.LibraryServesAConsumer PROPERTIES RESOURCE_LOCK build_folder_install TIMEOUT 300)
