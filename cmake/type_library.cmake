# Type libraries for Windows: an IDL file compiled, and built into a target as its resource 1.
find_file(STDOLE_LIBRARY stdole2.tlb REQUIRED NO_CMAKE_FIND_ROOT_PATH
  PATHS /usr/lib/x86_64-linux-gnu/wine/x86_64-windows /usr/lib/i386-linux-gnu/wine/i386-windows)
enable_language(RC)
get_filename_component(STDOLE_FOLDER ${STDOLE_LIBRARY} DIRECTORY)
if(CMAKE_SYSTEM_PROCESSOR STREQUAL "i686")
  set(WIDL_WIDTH -m32)
else()
  set(WIDL_WIDTH -m64)
endif()

# The library is called like the IDL file; `script` is a resource script that names it and more, configured here. A
# manifest may follow.
function(qv_type_library target idl script)
  get_filename_component(name ${idl} NAME_WE)
  get_filename_component(idl ${idl} ABSOLUTE)
  set(folder ${CMAKE_CURRENT_BINARY_DIR}/${target}_resources)
  add_custom_command(
    OUTPUT ${folder}/${name}.tlb
    COMMAND ${CMAKE_COMMAND} -E env WIDL_TIME_OVERRIDE=0 ${MINGW_WIDL} -t ${WIDL_WIDTH} -I ${PROJECT_SOURCE_DIR}/src -L ${STDOLE_FOLDER}
            -o ${folder}/${name}.tlb ${idl}
    DEPENDS ${idl} ${PROJECT_SOURCE_DIR}/src/platform/com/automation.idl
    COMMENT "Compiling the type library ${name}"
    VERBATIM)
  if(ARGN)  # a manifest that the script names by the variable
    set(manifest ${folder}/${target}.manifest)
    configure_file(${ARGN} ${manifest} @ONLY)
  endif()
  configure_file(${script} ${folder}/${name}.rc @ONLY)
  target_sources(${target} PRIVATE ${folder}/${name}.rc)
  set_source_files_properties(${folder}/${name}.rc PROPERTIES
    OBJECT_DEPENDS ${folder}/${name}.tlb INCLUDE_DIRECTORIES ${folder})
endfunction()
