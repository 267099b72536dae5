# The man pages of the programs built, with the project's version and the
# date of the source in their headings.
include(${CMAKE_CURRENT_LIST_DIR}/SourceDate.cmake)
pelkrin_source_date(PELKRIN_SOURCE_DATE ${PROJECT_SOURCE_DIR})
set(PELKRIN_MAN_PAGES Pelkrin.1 Pelkrin-view.1)
if(TARGET Pelkrin-prep)
  list(APPEND PELKRIN_MAN_PAGES Pelkrin-prep.1)
endif()
foreach(page ${PELKRIN_MAN_PAGES})
  configure_file(${PROJECT_SOURCE_DIR}/man/${page}.in ${PROJECT_BINARY_DIR}/man/${page} @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/man/${page} DESTINATION share/man/man1)
endforeach()
