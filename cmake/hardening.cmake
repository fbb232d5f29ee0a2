# How a site's build is made proof against what may be done to it, and the same wherever and whenever it is made:
# tools/check_binaries.py holds programs and libraries to this.
set(hardening "-ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -fstack-protector-strong -D_FORTIFY_SOURCE=2")
if(WIN32)
  # Lines for a debugger go into a file beside what is linked. A compiler cache may name sources from the build's folder.
  file(RELATIVE_PATH sources ${PROJECT_BINARY_DIR} ${PROJECT_SOURCE_DIR}/CMakeLists.txt)
  get_filename_component(sources ${sources} DIRECTORY)
  string(APPEND hardening " -g1 -ffile-prefix-map=${sources}=.")
  # The compiler keeps its stack check in a library of its own: whatever links our rooms needs it, tests too.
  add_link_options(-fstack-protector-strong -Wl,--dynamicbase,--nxcompat,--no-insert-timestamp)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    add_link_options(-Wl,--high-entropy-va)
  endif()
else()
  string(APPEND hardening " -fstack-clash-protection")
  if(CMAKE_SYSTEM_PROCESSOR STREQUAL "x86_64")
    string(APPEND hardening " -fcf-protection")
  endif()
  add_link_options(-Wl,-z,relro,-z,now,-z,noexecstack)
  include(CheckPIESupported)
  check_pie_supported(LANGUAGES CXX)
endif()
string(APPEND CMAKE_C_FLAGS_RELEASE " ${hardening}")
string(APPEND CMAKE_CXX_FLAGS_RELEASE " ${hardening}")
