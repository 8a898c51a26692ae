# The zrxml tool on the shipped samples: exit status and output of its commands.
if(TARGET zrxml)
  function(zr_tool_test name expected regex)
    add_test(NAME zrxml.${name}
             COMMAND ${CMAKE_COMMAND} -DTOOL=$<TARGET_FILE:zrxml> "-DARGS=${ARGN}" -DEXPECTED=${expected}
                     "-DOUTPUT_REGEX=${regex}" -P ${PROJECT_SOURCE_DIR}/tools/expectExit.cmake)
  endfunction()
  set(samples ${PROJECT_SOURCE_DIR}/samples)
  zr_tool_test(checkSample 0 "robotCell.xml: ok, 142 events, 112 lines, 0 faults" check ${samples}/robotCell.xml)
  zr_tool_test(checkFaultySample 1 "NOT well formed, [0-9]+ events, 16 lines, 8 faults"
               check ${samples}/robotCellFaulty.xml)
  zr_tool_test(checkMissingFile 2 "nothere.xml: cannot be opened" check ${samples}/robotCell.xml ${samples}/nothere.xml)
  zr_tool_test(eventsSample 0 "line 26: 3 empty element x=\"0.5\" y=\"0\" z=\"1.2\"" events ${samples}/robotCell.xml)
  zr_tool_test(unknownCommand 64 "unknown command" frobnicate)
  # The toolkit's form by default; the written-form options change the root's declarations and the reals.
  zr_tool_test(demoWritesTheToolkitForm 0 "<robotCell xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"\n"
               demo ${samples}/robotCell.xml)
  # The whole sample as the toolkit writes it, byte for byte: other programs read these bytes.
  add_test(NAME zrxml.demoWritesTheSampleByteForByte
           COMMAND sh -c "'$<TARGET_FILE:zrxml>' demo '${samples}/robotCell.xml' | \
cmp - '${CMAKE_CURRENT_SOURCE_DIR}/data/robotCellWritten.xml'")
  zr_tool_test(demoWritesNamespaceComplete 0 "<robotCell xmlns=\"http://www.zrtoolkit.org/namespace/cell\" xmlns:xsi="
               demo --namespace-complete --lossless-reals ${samples}/robotCell.xml)
  # Include elements are followed: the included documents' events appear in place, named by their file.
  zr_tool_test(checkFollowsIncludes 0 "plant.xml: ok, 21 events, 9 lines, 0 faults" check ${samples}/plant.xml)
  zr_tool_test(eventsNameIncludedFiles 0 "plantLineB.xml line 3: 1 start station name=\"weld\" serial=\"21\""
               events ${samples}/plant.xml)
endif()
