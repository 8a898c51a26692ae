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
  zr_tool_test(checkDirectory 2 "cannot be opened" check ${samples})
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
  zr_tool_test(commandHelp 0 "usage: zrxml check \\[--strict\\] \\[--warnings-as-faults\\] \\[-j N\\] \\[--schema XSD\\] FILE"
               check --help)
  # Include elements are followed: the included documents' events appear in place, named by their file.
  zr_tool_test(checkFollowsIncludes 0 "plant.xml: ok, 21 events, 9 lines, 0 faults" check ${samples}/plant.xml)
  zr_tool_test(eventsNameIncludedFiles 0 "plantLineB.xml line 3: 1 start station name=\"weld\" serial=\"21\""
               events ${samples}/plant.xml)
  # Validation against the written schema: the sample is valid; a wrong value and an unknown element are
  # two violations, each named with file and line.
  if(ZR_ZRXML_SCHEMA_CHECK)
    function(zr_schema_check_test name document expected regex)
      add_test(NAME zrxml.${name}
               COMMAND ${CMAKE_COMMAND} -DTOOL=$<TARGET_FILE:zrxml> -DDIR=${CMAKE_CURRENT_BINARY_DIR}/${name}
                       -DSCHEMA=robotCell.cell.xsd -DDOCUMENT=${document} -DEXPECTED=${expected}
                       "-DOUTPUT_REGEX=${regex}" ${ARGN} -P ${PROJECT_SOURCE_DIR}/tools/expectSchemaCheck.cmake)
    endfunction()
    zr_schema_check_test(checkSchemaValid ${samples}/robotCell.xml 0 "robotCell.xml: ok, .*, 0 schema violations")
    zr_schema_check_test(checkSchemaInvalid ${CMAKE_CURRENT_SOURCE_DIR}/data/robotCellInvalid.xml 1
                         "robotCellInvalid.xml: NOT valid, .*, 2 schema violations"
                         "-DERROR_REGEX=robotCellInvalid.xml[^L]*Line: 11.*robotCellInvalid.xml[^L]*Line: 13")
    # Documents as the library reads them: the toolkit's form (the namespace from xsi:schemaLocation), and
    # a robot included from another file, whose violation names that file and its line.
    set(toolData ${CMAKE_CURRENT_SOURCE_DIR}/data/tool)
    zr_schema_check_test(checkSchemaToolkitForm ${CMAKE_CURRENT_SOURCE_DIR}/data/robotCellWritten.xml 0
                         "robotCellWritten.xml: ok, .*, 0 schema violations")
    zr_schema_check_test(checkSchemaFollowsIncludes ${toolData}/cellWithInclude.xml 0
                         "cellWithInclude.xml: ok, .*, 0 schema violations")
    zr_schema_check_test(checkSchemaNamesTheIncludedFile ${toolData}/cellWithInvalidInclude.xml 1
                         "cellWithInvalidInclude.xml: NOT valid, .*, 1 schema violation\n"
                         "-DERROR_REGEX='heavy' is not a valid value[^L]*cellLoaderInvalid.xml[^L]*Line: 9")
    # A nil element (xsi:nil="true") is valid as written; the same element merely empty is not.
    zr_schema_check_test(checkSchemaNilElements ${toolData}/cellWithNil.xml 1
                         "cellWithNil.xml: NOT valid, .*, 1 schema violation\n"
                         "-DERROR_REGEX=^[^L]*mass[^L]*Line: 14\n$")
  endif()
endif()

# Output that cannot be written is a failure of the command: reported, exit 1, whatever was read.
if(TARGET zrxml AND EXISTS /dev/full)
  set(samples ${PROJECT_SOURCE_DIR}/samples)
  foreach(run "check:check ${samples}/robotCell.xml" "events:events ${samples}/robotCell.xml" "demo:demo"
              "demoValues:demo --values" "demoFormula:demo --formula")
    string(FIND "${run}" ":" colon)
    string(SUBSTRING "${run}" 0 ${colon} name)
    math(EXPR from "${colon} + 1")
    string(SUBSTRING "${run}" ${from} -1 words)
    add_test(NAME zrxml.fullOutput.${name}
             COMMAND sh -c "'$<TARGET_FILE:zrxml>' ${words} >/dev/full 2>err.${name}; s=$?; \
test $s -eq 1 && grep -q 'standard output could not be written' err.${name}")
  endforeach()
endif()

# A schema file that cannot be written is reported, not listed, and leaves no temporary file behind.
if(TARGET zrxml)
  set(dir ${CMAKE_CURRENT_BINARY_DIR}/unwritableSchema)
  add_test(NAME zrxml.schemaListsOnlyWrittenFiles
           COMMAND sh -c "rm -rf '${dir}' && mkdir -p '${dir}/robotCell.cell.xsd' && \
out=$('$<TARGET_FILE:zrxml>' schema '${dir}' 2>/dev/null); s=$?; \
test $s -ne 0 && test -z \"$out\" && test \"$(ls -A '${dir}')\" = robotCell.cell.xsd")
endif()

# A link planted where the schema's temporary file once went redirects nothing: the file it points to
# keeps its content, and the schema is written in place.
if(TARGET zrxml)
  set(dir ${CMAKE_CURRENT_BINARY_DIR}/plantedLink)
  add_test(NAME zrxml.schemaNeverWritesThroughAPlantedLink
           COMMAND sh -c "rm -rf '${dir}' && mkdir -p '${dir}/out' && echo precious > '${dir}/victim.txt' && \
ln -s '${dir}/victim.txt' '${dir}/out/robotCell.cell.xsd.tmp' && '$<TARGET_FILE:zrxml>' schema '${dir}/out' >/dev/null && \
test \"$(cat '${dir}/victim.txt')\" = precious && test -L '${dir}/out/robotCell.cell.xsd.tmp' && \
test ! -L '${dir}/out/robotCell.cell.xsd' && grep -q '<xs:schema' '${dir}/out/robotCell.cell.xsd'")
endif()

# A relative plug-in directory in the environment is a notice, not a fault: the run still succeeds.
if(TARGET zrxml)
  add_test(NAME zrxml.relativePluginPathIsNoFault
           COMMAND sh -c "ZR_PLUGIN_PATH=relative/dir '$<TARGET_FILE:zrxml>' demo --formula >/dev/null 2>err.relative; \
s=$?; test $s -eq 0 && grep -q 'relative directory in ZR_PLUGIN_PATH ignored' err.relative")
endif()

# A closed pipe on standard output ends a command at once with a report and exit 1, not by signal.
find_package(Python3 COMPONENTS Interpreter)
if(TARGET zrxml AND Python3_Interpreter_FOUND)
  add_test(NAME zrxml.closedPipeIsReportedAtOnce
           COMMAND ${Python3_EXECUTABLE} ${PROJECT_SOURCE_DIR}/tools/expectClosedPipe.py $<TARGET_FILE:zrxml>
                   ${CMAKE_CURRENT_BINARY_DIR}/closedPipe ${PROJECT_SOURCE_DIR}/samples)
endif()

# The verdict counts what it claims: the version warning and a namespace declared again with its URI
# are warnings (exit 0, "ok, 2 warnings"), each followed by its file and line; --warnings-as-faults
# counts them as faults again. Faults and warnings together: the faults decide.
if(TARGET zrxml)
  set(samples ${PROJECT_SOURCE_DIR}/samples)
  set(toolData ${CMAKE_CURRENT_SOURCE_DIR}/data/tool)
  zr_tool_test(checkWarningsAreNoFaults 0 "warnings.xml: ok, 2 warnings, [0-9]+ events, 5 lines, 0 faults\n$"
               check ${toolData}/warnings.xml)
  zr_tool_test(checkWarningsAreNoFaultsStrict 0 "warnings.xml: ok, 1 warning, [0-9]+ events, 5 lines, 0 faults\n$"
               check --strict ${toolData}/warnings.xml)
  zr_tool_test(checkWarningsAsFaults 1 "warnings.xml: NOT well formed, [0-9]+ events, 5 lines, 2 faults\n$"
               check --warnings-as-faults ${toolData}/warnings.xml)
  add_test(NAME zrxml.checkWarningNamesFileAndLine
           COMMAND sh -c "'$<TARGET_FILE:zrxml>' check '${toolData}/warnings.xml' 2>&1 >/dev/null | tr '\\n\\t' '|~' | \
grep -q 'two versions smaller than code base version (v3.0.0).|~File: [^|]*warnings.xml|~Line: 2|'")
  # Files checked at once: each file's output in the order the files were given, the worst status wins.
  zr_tool_test(checkInParallelKeepsTheOrder 2
               "robotCellFaulty.xml: NOT well formed[^\n]*\n[^\n]*warnings.xml: ok, 2 warnings[^\n]*\n[^\n]*robotCell.xml: ok[^\n]*\n[^\n]*nothere.xml: cannot be opened\n[^\n]*plant.xml: ok[^\n]*\n$"
               check -j 3 ${samples}/robotCellFaulty.xml ${toolData}/warnings.xml ${samples}/robotCell.xml
               ${samples}/nothere.xml ${samples}/plant.xml)
  zr_tool_test(checkInParallelFaultsExitOne 1 "warnings.xml: ok[^\n]*\n[^\n]*robotCellFaulty.xml: NOT well formed"
               check -j2 ${toolData}/warnings.xml ${samples}/robotCellFaulty.xml)
  add_test(NAME zrxml.checkInParallelKeepsReportsWithTheirFile
           COMMAND sh -c "'$<TARGET_FILE:zrxml>' check -j 2 '${samples}/robotCellFaulty.xml' '${samples}/robotCell.xml' \
2>&1 | tail -n 2 | head -n 1 | grep -q 'robotCellFaulty.xml: NOT well formed'")
  zr_tool_test(checkRefusesABadJobCount 64 "usage: zrxml check" check -j 0 ${samples}/robotCell.xml)
  # Events stay on one line: line breaks, tabs and backslashes in values and content are escaped.
  zr_tool_test(eventsEscapeLineBreaks 0 "1 start notes kind=\"a\\\\tb\"\nline 2: 4 content notes \"first line\\\\nsecond\\\\\\\\line\"\n"
               events ${toolData}/multiline.xml)
endif()
