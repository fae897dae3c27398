# Runs qmcad on a script in a fresh demo installation and compares the transcript with a golden
# file; the demo directory's path is written as <DEMO>.
file(REMOVE_RECURSE ${WORK})
execute_process(COMMAND ${QMCAD} --demo ${WORK}/demo --script ${SCRIPT}
  OUTPUT_VARIABLE out ERROR_VARIABLE err RESULT_VARIABLE rc)
if(NOT rc EQUAL 0)
  message(FATAL_ERROR "qmcad exited with ${rc}: ${err}")
endif()
string(REPLACE "/" "\\" demo "${WORK}/demo")
string(REPLACE "${demo}" "<DEMO>" out "${out}")
file(WRITE ${WORK}/transcript.txt "${out}")
file(READ ${GOLDEN} golden)
if(NOT out STREQUAL golden)
  message(FATAL_ERROR "transcript differs from ${GOLDEN}; see ${WORK}/transcript.txt")
endif()
