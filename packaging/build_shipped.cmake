# Builds what ships, in this build's folder and in that of the other width where the package takes it in.
function(run)
  execute_process(COMMAND ${ARGN} WORKING_DIRECTORY ${CPACK_QVESPRIT_SOURCE_DIR} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

run(${CMAKE_COMMAND} --build ${CPACK_QVESPRIT_BINARY_DIR} --target shipped)
if(CPACK_QVESPRIT_OTHER_PRESET)
  run(${CMAKE_COMMAND} --preset ${CPACK_QVESPRIT_OTHER_PRESET} --log-level=WARNING)
  run(${CMAKE_COMMAND} --build --preset ${CPACK_QVESPRIT_OTHER_PRESET} --target shipped)
endif()
