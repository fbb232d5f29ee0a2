# Writes OUTPUT with the commit of the folder SOURCE; "+" behind it where files differ from it, empty where there is none.
set(commit "")
if(GIT AND EXISTS ${SOURCE}/.git)
  execute_process(COMMAND ${GIT} -C ${SOURCE} describe --always --abbrev=12 --exclude=* --dirty=+
    OUTPUT_VARIABLE commit OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
endif()
file(CONFIGURE OUTPUT ${OUTPUT} CONTENT
"namespace deskhost {
extern const char* const commit;
const char* const commit = \"${commit}\";
}
")
