# The version stands in the project's line of CMakeLists.txt and nowhere else: programs have it from
# "version/version.h", which is made when the build is configured.
add_library(vx_version INTERFACE)
file(CONFIGURE OUTPUT ${CMAKE_BINARY_DIR}/include/vx_version/version/version.h CONTENT
"// Made when the build is configured.
#pragma once

#define VX_VERSION \"@PROJECT_VERSION@\"
" @ONLY)
target_include_directories(vx_version INTERFACE ${CMAKE_BINARY_DIR}/include/vx_version)
