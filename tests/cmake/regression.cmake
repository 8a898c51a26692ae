# The replay of kept fuzz inputs runs the fuzz targets' own drivers over the two example models.
if(TARGET xml_regression_test)
  if(NOT TARGET zrRobotCell)
    add_subdirectory(${PROJECT_SOURCE_DIR}/examples ${PROJECT_BINARY_DIR}/examples)
  endif()
  target_include_directories(xml_regression_test PRIVATE ${PROJECT_SOURCE_DIR}/fuzz)
  target_link_libraries(xml_regression_test PRIVATE zrRobotCell zrExpressionTree)
endif()
