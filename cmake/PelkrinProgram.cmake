# pelkrin_program(PROGRAM LIBRARY [LINKS lib...])
#
# One program of the project from the folder this is called in: every .cpp
# file of the folder and of its subfolders but main.cpp becomes the static
# library LIBRARY (linked to the Pelkrin library and LINKS), which the
# program's tests link too; main.cpp becomes PROGRAM, installed in bin/.
function(pelkrin_program program library)
  cmake_parse_arguments(P "" "" "LINKS;SOURCES" ${ARGN})
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
  list(REMOVE_ITEM sources ${CMAKE_CURRENT_SOURCE_DIR}/main.cpp)
  add_library(${library} STATIC ${sources} ${P_SOURCES})
  target_link_libraries(${library} PUBLIC pelkrin_core ${P_LINKS})
  add_executable(${program} main.cpp)
  # Beside one another at the top of the build folder, where the scripts run them.
  set_target_properties(${program} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR})
  target_link_libraries(${program} PRIVATE ${library})
  install(TARGETS ${program} RUNTIME DESTINATION bin)
endfunction()
