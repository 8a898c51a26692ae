# Two builds of one tiny plug-in, both called zrTestDllPlugin.zrp, in separate directories; each answers
# with its own number so that the loader's tests can tell which directory a library came from.
foreach(variant first second)
  set(target zrTestDllPlugin_${variant})
  add_library(${target} MODULE ${CMAKE_CURRENT_SOURCE_DIR}/plugin/ZrTestDllPlugin.cpp)
  if(variant STREQUAL "first")
    target_compile_definitions(${target} PRIVATE ZR_TEST_PLUGIN_ANSWER=1)
  else()
    target_compile_definitions(${target} PRIVATE ZR_TEST_PLUGIN_ANSWER=2)
  endif()
  set_target_properties(${target} PROPERTIES
    PREFIX "" SUFFIX ".zrp" OUTPUT_NAME zrTestDllPlugin
    LIBRARY_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/plugins/${variant})
endforeach()

if(TARGET foundCore_dllloader_test)
  add_dependencies(foundCore_dllloader_test zrTestDllPlugin_first zrTestDllPlugin_second)
  target_link_libraries(foundCore_dllloader_test PRIVATE ${CMAKE_DL_LIBS})
  target_compile_definitions(foundCore_dllloader_test PRIVATE
    ZR_TEST_PLUGIN_DIR_FIRST="${CMAKE_CURRENT_BINARY_DIR}/plugins/first"
    ZR_TEST_PLUGIN_DIR_SECOND="${CMAKE_CURRENT_BINARY_DIR}/plugins/second")
endif()
