# Tests that walk the robot-cell example model link its library.
foreach(name xml_visitor_test xml_visitor_example_test)
  if(TARGET ${name} AND TARGET zrRobotCell)
    target_link_libraries(${name} PRIVATE zrRobotCell)
  endif()
endforeach()
