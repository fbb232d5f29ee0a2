# What is built here stands on: for the system that runs the build its own packages; for Windows their headers and
# sources, with the system's own ODBC.
if(NOT CMAKE_CROSSCOMPILING)
  find_package(nlohmann_json REQUIRED)
  find_package(CLI11 REQUIRED)
  find_package(ODBC REQUIRED)
  find_package(GTest REQUIRED)
  return()
endif()

# Nothing else of the building system's headers may be found, so each package's folder is linked into a folder that
# holds nothing but them.
set(package_headers ${PROJECT_BINARY_DIR}/package_headers)
file(MAKE_DIRECTORY ${package_headers})
foreach(package nlohmann_json:nlohmann CLI11:CLI)
  string(REPLACE ":" ";" package ${package})
  list(GET package 0 name)
  list(GET package 1 folder)
  file(CREATE_LINK /usr/include/${folder} ${package_headers}/${folder} SYMBOLIC)
  add_library(${name}::${name} INTERFACE IMPORTED)
  target_include_directories(${name}::${name} SYSTEM INTERFACE ${package_headers})
endforeach()

add_library(ODBC::ODBC INTERFACE IMPORTED)
target_link_libraries(ODBC::ODBC INTERFACE odbc32)
target_compile_options(ODBC::ODBC INTERFACE "SHELL:-include windows.h")  # whose types its headers take

set(BUILD_GMOCK OFF)
set(INSTALL_GTEST OFF)
add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
