# What `cmake --install` puts in place for programs that build on the library:
# libpelkrin.a, the public headers under include/pelkrin/, a CMake package
# (find_package(Pelkrin) gives Pelkrin::pelkrin) and pkg-config's pelkrin.pc.
# The programs' own folders (src/driver, src/view_tool, src/prep) stay private.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set_target_properties(pelkrin_core PROPERTIES OUTPUT_NAME pelkrin EXPORT_NAME pelkrin)
target_include_directories(pelkrin_core INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)

# The public headers include one another by relative paths, so that they
# resolve the same in src/ and under include/pelkrin/.
foreach(folder ${PELKRIN_LIBRARY_FOLDERS})
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/src/${folder} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/pelkrin
    FILES_MATCHING PATTERN "*.h")
endforeach()

install(TARGETS pelkrin_core EXPORT PelkrinTargets ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
set(PELKRIN_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Pelkrin)
install(EXPORT PelkrinTargets NAMESPACE Pelkrin:: DESTINATION ${PELKRIN_CMAKE_DIR})
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/PelkrinConfig.cmake.in ${PROJECT_BINARY_DIR}/PelkrinConfig.cmake
  INSTALL_DESTINATION ${PELKRIN_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/PelkrinConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/PelkrinConfig.cmake ${PROJECT_BINARY_DIR}/PelkrinConfigVersion.cmake
  DESTINATION ${PELKRIN_CMAKE_DIR})

# pelkrin.pc names the prefix relative to its own folder, so the installed
# tree can be moved (or installed with --prefix) and still be found.
file(RELATIVE_PATH PELKRIN_PC_TO_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
configure_file(${PROJECT_SOURCE_DIR}/cmake/pelkrin.pc.in ${PROJECT_BINARY_DIR}/pelkrin.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/pelkrin.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
