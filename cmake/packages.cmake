# What is built here stands on: for the system that runs the build its own packages; for Windows their headers and
# sources, with the system's own ODBC.
if(NOT CMAKE_CROSSCOMPILING)
  find_package(nlohmann_json REQUIRED)
  find_package(ODBC REQUIRED)
  find_package(GTest REQUIRED)
  return()
endif()

# Nothing else of the building system's headers may be found, so the folder of one that is needed is linked into a
# folder that holds nothing else.
set(package_headers ${PROJECT_BINARY_DIR}/package_headers)
file(MAKE_DIRECTORY ${package_headers})
file(CREATE_LINK /usr/include/nlohmann ${package_headers}/nlohmann SYMBOLIC)
add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED)
target_include_directories(nlohmann_json::nlohmann_json SYSTEM INTERFACE ${package_headers})

add_library(ODBC::ODBC INTERFACE IMPORTED)
target_link_libraries(ODBC::ODBC INTERFACE odbc32)
target_compile_options(ODBC::ODBC INTERFACE "SHELL:-include windows.h")  # whose types its headers take

set(BUILD_GMOCK OFF)
set(INSTALL_GTEST OFF)
add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL)
