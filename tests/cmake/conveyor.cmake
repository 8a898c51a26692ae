# Tests of the conveyor example model, a header of the examples built here when the example is off.
if(NOT TARGET zrConveyorModel)
  if(NOT TARGET zrRobotCell)
    add_subdirectory(${PROJECT_SOURCE_DIR}/examples ${PROJECT_BINARY_DIR}/examples)
  endif()
endif()
# The written documents are checked against the generated schema by xmllint, when it is installed.
find_program(ZR_XMLLINT xmllint)
if(TARGET xml_conveyor_example_test)
  target_link_libraries(xml_conveyor_example_test PRIVATE zrConveyorModel)
  target_compile_definitions(xml_conveyor_example_test PRIVATE
    ZR_CONVEYOR_MODEL_HEADER="${PROJECT_SOURCE_DIR}/examples/conveyor/ZrConveyorModel.h"
    ZR_XMLLINT="${ZR_XMLLINT}")
endif()
