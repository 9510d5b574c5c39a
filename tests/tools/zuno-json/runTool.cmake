# Runs zuno-json once and checks its exit code, its standard output against a file, and
# that its standard error begins with a text.
#   TOOL, EMULATOR (may be empty), ARGS (list), INPUT (file for standard input, optional),
#   EXPECTED_OUTPUT (file, optional), EXPECTED_ERROR (text, optional), EXPECTED_CODE
set(command ${EMULATOR} ${TOOL} ${ARGS})
if(INPUT)
    execute_process(COMMAND ${command} INPUT_FILE ${INPUT}
        OUTPUT_VARIABLE output ERROR_VARIABLE error RESULT_VARIABLE code)
else()
    execute_process(COMMAND ${command}
        OUTPUT_VARIABLE output ERROR_VARIABLE error RESULT_VARIABLE code)
endif()

if(NOT code STREQUAL EXPECTED_CODE)
    message(FATAL_ERROR "exit code ${code}, expected ${EXPECTED_CODE}\nstdout: ${output}\nstderr: ${error}")
endif()
if(EXPECTED_OUTPUT)
    file(READ ${EXPECTED_OUTPUT} expected)
    if(NOT output STREQUAL expected)
        message(FATAL_ERROR "standard output differs\n--- got:\n${output}\n--- expected:\n${expected}")
    endif()
elseif(NOT output STREQUAL "")
    message(FATAL_ERROR "unexpected standard output: ${output}")
endif()
if(EXPECTED_ERROR)
    string(FIND "${error}" "${EXPECTED_ERROR}" at)
    if(NOT at EQUAL 0)
        message(FATAL_ERROR "standard error is:\n${error}\nexpected it to begin with:\n${EXPECTED_ERROR}")
    endif()
endif()
