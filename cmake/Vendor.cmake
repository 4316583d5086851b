# What those who write a platform library begin with and link it with on a workstation.

# The library that does nothing.
find_package(Python3 REQUIRED COMPONENTS Interpreter)
file(GLOB headers CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/platform/*.h)
set(null_source ${CMAKE_BINARY_DIR}/null_platform.c)
set(generator ${CMAKE_SOURCE_DIR}/tools/null_platform.py)
add_custom_command(
  OUTPUT ${null_source}
  COMMAND ${Python3_EXECUTABLE} ${generator} ${headers} > ${null_source}
  DEPENDS ${generator} ${headers})
add_library(null_platform SHARED ${null_source})
target_compile_options(null_platform PRIVATE -w)
target_link_libraries(null_platform PRIVATE vx_platform)

# vx_archive(<name> <main> <layer>...): lib<name>.a, which is a whole program but for the platform
# library.
function(vx_archive name main)
  set(target ${name}_archive)
  list(TRANSFORM ARGN REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>" OUTPUT_VARIABLE objects)
  add_library(${target} STATIC ${CMAKE_SOURCE_DIR}/${main} ${objects})
  set_target_properties(${target} PROPERTIES OUTPUT_NAME ${name} CXX_STANDARD 17)
  foreach(layer IN LISTS ARGN)
    target_include_directories(${target} PRIVATE
      $<TARGET_PROPERTY:${layer},INTERFACE_INCLUDE_DIRECTORIES>)
  endforeach()
  target_link_libraries(${target} PRIVATE vx_version vx_platform)
endfunction()

vx_archive(vx_cloud_agent core/main.cpp ${VX_AGENT_LAYERS})
vx_agent_options(vx_cloud_agent_archive)
vx_archive(vx_cloud_doctor doctor/main.cpp vx_doctor ${VX_AGENT_LAYERS})
vx_agent_options(vx_cloud_doctor_archive)
vx_archive(vx_platform_judge judge/main.cpp vx_judge vx_driver)
