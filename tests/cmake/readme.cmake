# README.md shows lines of the programs in examples/readme/ (readme_blocks_test holds each block to its
# program's lines); each program runs here as a test of its own, in a directory of its own where it
# writes its documents. The example's targets are built here when the tools and examples are off.
if(NOT TARGET zrRobotCell)
  add_subdirectory(${PROJECT_SOURCE_DIR}/examples ${PROJECT_BINARY_DIR}/examples)
endif()
if(TARGET readme_blocks_test)
  target_compile_definitions(readme_blocks_test PRIVATE ZR_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  # The shell blocks run the built tool.
  if(TARGET zrxml)
    add_dependencies(readme_blocks_test zrxml)
  endif()
endif()
file(GLOB ZR_README_PROGRAM_SOURCES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/examples/readme/*.cpp)
foreach(source ${ZR_README_PROGRAM_SOURCES})
  get_filename_component(name ${source} NAME_WE)
  set(dir ${CMAKE_CURRENT_BINARY_DIR}/readme/${name})
  file(MAKE_DIRECTORY ${dir})
  add_test(NAME readme.${name} COMMAND readme_${name} WORKING_DIRECTORY ${dir})
endforeach()
