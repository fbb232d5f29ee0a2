# What files tell of themselves: the version of project(), who publishes them, and the commit that they are of.
set(QVESPRIT_PUBLISHER "QVEsprit")
set(QVESPRIT_GENERATED ${PROJECT_BINARY_DIR}/generated)
find_package(Git QUIET)

# Looked up at each build, written only where it is another one.
add_custom_target(commit
  COMMAND ${CMAKE_COMMAND} -DGIT=${GIT_EXECUTABLE} -DSOURCE=${PROJECT_SOURCE_DIR}
          -DOUTPUT=${QVESPRIT_GENERATED}/commit.cpp -P ${CMAKE_CURRENT_LIST_DIR}/commit.cmake
  BYPRODUCTS ${QVESPRIT_GENERATED}/commit.cpp
  COMMENT "Looking up the commit"
  VERBATIM)

# The icon: the picture of the toolbar's first button. Resources of a program or library for Windows.
if(WIN32)
  find_program(PYTHON3 python3 PATHS /usr/bin NO_DEFAULT_PATH REQUIRED)
  find_program(RSVG_CONVERT rsvg-convert REQUIRED)
  set(QVESPRIT_ICON ${QVESPRIT_GENERATED}/QVEsprit.ico)
  set(drawings ${PROJECT_SOURCE_DIR}/resources/bitmaps/QVEsprit16-1.svg
               ${PROJECT_SOURCE_DIR}/resources/bitmaps/QVEsprit32-1.svg)
  add_custom_command(
    OUTPUT ${QVESPRIT_ICON}
    COMMAND ${CMAKE_COMMAND} -E make_directory ${QVESPRIT_GENERATED}
    COMMAND ${PYTHON3} ${PROJECT_SOURCE_DIR}/tools/make_icon.py ${drawings} ${QVESPRIT_ICON}
    DEPENDS ${PROJECT_SOURCE_DIR}/tools/make_icon.py ${drawings}
    COMMENT "Drawing the icon"
    VERBATIM)
  add_custom_target(icon DEPENDS ${QVESPRIT_ICON})
endif()

# Version and icon in TARGET's file, whose FILE_TYPE is VFT_DLL or VFT_APP; its symbols go into a file beside it.
function(qv_windows_product target file_type description)
  set(file_name $<TARGET_FILE_NAME:${target}>)
  if(file_type STREQUAL "VFT_DLL")
    set(original_name ${target}.dll)
  else()
    set(original_name ${target}.exe)
  endif()
  set(script ${QVESPRIT_GENERATED}/${target}_version.rc)
  configure_file(${PROJECT_SOURCE_DIR}/packaging/version.rc.in ${script} @ONLY)
  target_sources(${target} PRIVATE ${script})
  set_source_files_properties(${script} PROPERTIES OBJECT_DEPENDS ${QVESPRIT_ICON})
  add_dependencies(${target} icon)
  set(stamp ${CMAKE_COMMAND} -E env SOURCE_DATE_EPOCH=0)  # or else they would write the time into the file
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${stamp} ${CMAKE_OBJCOPY} --only-keep-debug ${file_name} ${file_name}.debug
    COMMAND ${stamp} ${CMAKE_STRIP} --strip-all ${file_name}
    COMMAND ${stamp} ${CMAKE_OBJCOPY} --add-gnu-debuglink=${file_name}.debug ${file_name}
    WORKING_DIRECTORY $<TARGET_FILE_DIR:${target}>
    VERBATIM)
  install(FILES $<TARGET_FILE:${target}>.debug DESTINATION ${QVESPRIT_FOLDER})
endfunction()
