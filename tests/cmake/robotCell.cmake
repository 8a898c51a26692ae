# Tests that walk the robot-cell example model link its library, which is built here when the
# tools and the example are switched off.
if(NOT TARGET zrRobotCell)
  add_subdirectory(${PROJECT_SOURCE_DIR}/examples ${PROJECT_BINARY_DIR}/examples)
endif()
foreach(name xml_visitor_example_test xml_application_types_test xml_truncation_test)
  if(TARGET ${name})
    target_link_libraries(${name} PRIVATE zrRobotCell)
  endif()
endforeach()
