# Plug-in tests: the project's own plug-ins (built here too when the tools are switched off) and tiny
# test plug-ins, all placed in one directory that the tests put on the search path:
#   zrTestNodesA / zrTestNodesB   loadable, offering the classes "alpha" / "beta"
#   zrTestNoClassToken            lacks getClassToken
#   zrTestNoCreator               lacks getCreator
#   zrTestEndless                 never ends its class list
#   zrTestNullCreator             has no creator for its first class, "zeta", then offers "second"
if(NOT TARGET zrRobotCell)
  add_subdirectory(${PROJECT_SOURCE_DIR}/examples ${PROJECT_BINARY_DIR}/examples)
endif()
if(NOT TARGET zrExpressionExtras)
  add_subdirectory(${PROJECT_SOURCE_DIR}/plugins ${PROJECT_BINARY_DIR}/plugins)
endif()

set(ZR_TEST_NODE_PLUGIN_DIR ${CMAKE_CURRENT_BINARY_DIR}/plugins/nodes)
set(ZR_TEST_NODE_PLUGINS "")
foreach(variant NodesA NodesB NoClassToken NoCreator Endless NullCreator)
  set(target zrTest${variant})
  add_library(${target} MODULE ${CMAKE_CURRENT_SOURCE_DIR}/plugin/ZrTestNodePlugin.cpp)
  target_link_libraries(${target} PRIVATE zrXml zr_warnings)
  set_target_properties(${target} PROPERTIES PREFIX "" SUFFIX ".zrp" CXX_VISIBILITY_PRESET hidden
    LIBRARY_OUTPUT_DIRECTORY ${ZR_TEST_NODE_PLUGIN_DIR})
  list(APPEND ZR_TEST_NODE_PLUGINS ${target})
endforeach()
target_compile_definitions(zrTestNodesA PRIVATE ZR_TEST_NODE_NAME="alpha")
target_compile_definitions(zrTestNodesB PRIVATE ZR_TEST_NODE_NAME="beta")
target_compile_definitions(zrTestNoClassToken PRIVATE ZR_TEST_NODE_NAME="gamma" ZR_TEST_WITHOUT_CLASS_TOKEN)
target_compile_definitions(zrTestNoCreator PRIVATE ZR_TEST_NODE_NAME="delta" ZR_TEST_WITHOUT_CREATOR)
target_compile_definitions(zrTestEndless PRIVATE ZR_TEST_NODE_NAME="epsilon" ZR_TEST_ENDLESS)
target_compile_definitions(zrTestNullCreator PRIVATE ZR_TEST_NODE_NAME="zeta" ZR_TEST_NULL_FIRST_CREATOR)

file(GLOB ZR_PLUGIN_TEST_SOURCES CONFIGURE_DEPENDS
  ${CMAKE_CURRENT_SOURCE_DIR}/xml_plugin*_test.cpp ${CMAKE_CURRENT_SOURCE_DIR}/xml_variable*_test.cpp)
foreach(src ${ZR_PLUGIN_TEST_SOURCES})
  get_filename_component(name ${src} NAME_WE)
  if(TARGET ${name})
    add_dependencies(${name} zrExpressionExtras ${ZR_TEST_NODE_PLUGINS})
    target_link_libraries(${name} PRIVATE zrExpressionTree)
    target_compile_definitions(${name} PRIVATE
      ZR_TEST_NODE_PLUGIN_DIR="${ZR_TEST_NODE_PLUGIN_DIR}"
      ZR_PLUGIN_BUILD_DIR="${ZR_PLUGIN_BUILD_DIR}")
  endif()
endforeach()
