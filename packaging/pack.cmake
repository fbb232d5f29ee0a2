# Makes the packages out of what CPack has put together.
set(signing)
foreach(name IN ITEMS CERTIFICATE KEY PASSWORD_FILE ROOT TIME_SERVER)
  set(value "${CPACK_QVESPRIT_SIGN_${name}}")
  if(NOT value)
    set(value "$ENV{QVESPRIT_SIGN_${name}}")
  endif()
  if(value)
    string(TOLOWER --sign-${name} option)
    string(REPLACE "_" "-" option ${option})
    list(APPEND signing ${option} ${value})
  endif()
endforeach()
file(GLOB debian_packages ${CPACK_OUTPUT_FILE_PREFIX}/*_${CPACK_QVESPRIT_VERSION}_*.deb)
list(TRANSFORM debian_packages PREPEND --add=)
execute_process(
  COMMAND ${CPACK_QVESPRIT_PYTHON} ${CPACK_QVESPRIT_SOURCE_DIR}/tools/make_packages.py
          ${CPACK_TEMPORARY_DIRECTORY} ${CPACK_QVESPRIT_PACKAGES} --version ${CPACK_QVESPRIT_VERSION}
          --publisher ${CPACK_QVESPRIT_PUBLISHER} ${CPACK_QVESPRIT_OPTIONS} ${signing}
          --folder ${CPACK_QVESPRIT_BINARY_DIR} ${debian_packages}
  COMMAND_ERROR_IS_FATAL ANY)
