# Runs colloq-sim and checks its exit status and output.
#   -DSIM=<program> -DARGS=<arguments separated by |> -DEXPECT_EXIT=<status>
#   -DEXPECT_OUTPUT=<regular expression the output must match> [-DINPUT=<file for standard input>]
#   [-DREJECT_OUTPUT=<regular expression the output must not match>]
#   [-DCOLOUR=yes|no: the output must, or must not, hold colour escapes]
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
if(DEFINED REJECT_OUTPUT AND output MATCHES "${REJECT_OUTPUT}")
  message(FATAL_ERROR "the output should not match: ${REJECT_OUTPUT}")
endif()
string(ASCII 27 escape)
if(COLOUR STREQUAL "yes" AND NOT output MATCHES "${escape}\\[[0-9;]+m")
  message(FATAL_ERROR "the output has no colour")
elseif(COLOUR STREQUAL "no" AND output MATCHES "${escape}")
  message(FATAL_ERROR "the output has colour escapes")
endif()
