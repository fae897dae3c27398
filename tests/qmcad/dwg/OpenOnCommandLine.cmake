# qmcad FILE opens the drawing at start: a binary DWG through the converter, a file that is no
# drawing with the open failure message and a new drawing instead.
file(REMOVE_RECURSE ${WORK})
set(ENV{XDG_CACHE_HOME} ${WORK}/cache)
execute_process(COMMAND ${QMCAD} --demo ${WORK}/demo --script ${SCRIPT} ${DWG}
  OUTPUT_VARIABLE out ERROR_VARIABLE err RESULT_VARIABLE rc)
if(NOT rc EQUAL 0 OR NOT out MATCHES "转换为 DXF" OR out MATCHES "打开失败")
  message(FATAL_ERROR "opening ${DWG} (exit ${rc}):\n${out}\n${err}")
endif()
file(WRITE ${WORK}/bad.dwg "AC1032 and then nothing a converter can read")
execute_process(COMMAND ${QMCAD} --demo ${WORK}/demo --script ${SCRIPT} ${WORK}/bad.dwg
  OUTPUT_VARIABLE out ERROR_VARIABLE err RESULT_VARIABLE rc)
if(NOT rc EQUAL 0 OR NOT out MATCHES "文件<${WORK}/bad.dwg>打开失败!")
  message(FATAL_ERROR "opening a broken file (exit ${rc}):\n${out}\n${err}")
endif()
file(READ ${WORK}/bad.dwg after)
if(NOT after STREQUAL "AC1032 and then nothing a converter can read")
  message(FATAL_ERROR "the broken file was changed")
endif()
