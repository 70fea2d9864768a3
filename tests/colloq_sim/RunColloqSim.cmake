# Runs colloq-sim and checks its exit status and output.
#   -DSIM=<program> -DARGS=<arguments separated by |> -DEXPECT_EXIT=<status>
#   -DEXPECT_OUTPUT=<regular expression the output must match> [-DINPUT=<file for standard input>]
string(REPLACE "|" ";" arguments "${ARGS}")
set(input_option)
if(INPUT)
  set(input_option INPUT_FILE ${INPUT})
endif()
execute_process(COMMAND ${SIM} ${arguments}
  ${input_option}
  RESULT_VARIABLE status
  OUTPUT_VARIABLE output
  ERROR_VARIABLE output
  TIMEOUT 100)
message("${output}")
if(NOT "${status}" STREQUAL "${EXPECT_EXIT}")
  message(FATAL_ERROR "colloq-sim ended with ${status}, expected ${EXPECT_EXIT}")
endif()
if(NOT output MATCHES "${EXPECT_OUTPUT}")
  message(FATAL_ERROR "the output does not match: ${EXPECT_OUTPUT}")
endif()
