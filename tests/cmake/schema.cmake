# Schema tests validate written documents against the generated schemas with xmllint (libxml2-utils),
# an independent validator; they walk both example models, the formula's with its plug-in loaded.
find_program(ZR_XMLLINT xmllint)
if(NOT TARGET zrRobotCell)
  add_subdirectory(${PROJECT_SOURCE_DIR}/examples ${PROJECT_BINARY_DIR}/examples)
endif()
if(NOT TARGET zrExpressionExtras)
  add_subdirectory(${PROJECT_SOURCE_DIR}/plugins ${PROJECT_BINARY_DIR}/plugins)
endif()
file(GLOB ZR_SCHEMA_TEST_SOURCES CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/xml_schema*_test.cpp)
foreach(src ${ZR_SCHEMA_TEST_SOURCES})
  get_filename_component(name ${src} NAME_WE)
  if(TARGET ${name})
    target_link_libraries(${name} PRIVATE zrRobotCell zrExpressionTree)
    add_dependencies(${name} zrExpressionExtras)
    target_compile_definitions(${name} PRIVATE ZR_XMLLINT="${ZR_XMLLINT}" ZR_PLUGIN_BUILD_DIR="${ZR_PLUGIN_BUILD_DIR}")
  endif()
endforeach()

# zrxml schema writes both example schemas into the directory given, and refuses a missing directory.
if(TARGET zrxml)
  file(MAKE_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/schemas)
  add_test(NAME zrxml.schemaWritesTheExampleSchemas
           COMMAND ${CMAKE_COMMAND} -DTOOL=$<TARGET_FILE:zrxml> "-DARGS=schema;${CMAKE_CURRENT_BINARY_DIR}/schemas"
                   -DEXPECTED=0 "-DOUTPUT_REGEX=robotCell\\.cell\\.xsd\n.*formula\\.cell\\.xsd"
                   -P ${PROJECT_SOURCE_DIR}/tools/expectExit.cmake)
  add_test(NAME zrxml.schemaRefusesAMissingDirectory
           COMMAND ${CMAKE_COMMAND} -DTOOL=$<TARGET_FILE:zrxml> "-DARGS=schema;${CMAKE_CURRENT_BINARY_DIR}/nothere"
                   -DEXPECTED=2 -P ${PROJECT_SOURCE_DIR}/tools/expectExit.cmake)
endif()

# The shipped samples are documents of the schemas that zrxml writes, as an outside validator sees them.
if(TARGET zrxml AND ZR_XMLLINT)
  set(dir ${CMAKE_CURRENT_BINARY_DIR}/sampleSchemas)
  add_test(NAME zrxml.shippedSamplesValidateAgainstTheWrittenSchemas
           COMMAND sh -c "mkdir -p '${dir}' && '$<TARGET_FILE:zrxml>' schema '${dir}' >/dev/null && \
'${ZR_XMLLINT}' --noout --schema '${dir}/robotCell.cell.xsd' '${PROJECT_SOURCE_DIR}/samples/robotCell.xml' && \
'${ZR_XMLLINT}' --noout --schema '${dir}/formula.cell.xsd' '${PROJECT_SOURCE_DIR}/examples/expression/formula.xml'")
endif()

# With --namespace-complete the tool writes the samples beside their schemas, and they validate there.
if(TARGET zrxml AND ZR_XMLLINT)
  set(dir ${CMAKE_CURRENT_BINARY_DIR}/completeSamples)
  add_test(NAME zrxml.namespaceCompleteSamplesValidate
           COMMAND sh -c "mkdir -p '${dir}' && '$<TARGET_FILE:zrxml>' schema --namespace-complete '${dir}' >/dev/null && \
'${ZR_XMLLINT}' --noout --schema '${dir}/robotCell.cell.xsd' '${dir}/robotCell.xml' && \
'${ZR_XMLLINT}' --noout --schema '${dir}/formula.cell.xsd' '${dir}/formula.xml'")
endif()
