# The one time that stands in packages: that of the last commit, or what SOURCE_DATE_EPOCH says; without both a fixed one.
if(NOT DEFINED ENV{SOURCE_DATE_EPOCH})
  set(time "")
  if(CPACK_QVESPRIT_GIT AND EXISTS ${CPACK_QVESPRIT_SOURCE_DIR}/.git)
    execute_process(COMMAND ${CPACK_QVESPRIT_GIT} -C ${CPACK_QVESPRIT_SOURCE_DIR} log -1 --format=%ct
      OUTPUT_VARIABLE time OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
  endif()
  if(NOT time)
    set(time 1767225600)  # 2026 begins
  endif()
  set(ENV{SOURCE_DATE_EPOCH} ${time})
endif()
if(CPACK_GENERATOR STREQUAL "DEB")
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
else()
  set(CPACK_PACKAGING_INSTALL_PREFIX /)
endif()
