# The agent as a whole: the layers and the platform library call each other, and the firmware calls
# the driver functions by name, so an executable takes them as one group and the driver entire.
set(VX_AGENT_LAYERS vx_core vx_transport vx_sections vx_driver vx_json vx_base)

# vx_agent_executable(<target> <main> <platform>): a program of the agent's layers, whose `main` is in
# the given source, on the given platform library.
function(vx_agent_executable target main platform)
  add_executable(${target} ${CMAKE_SOURCE_DIR}/${main})
  set_target_properties(${target} PROPERTIES ENABLE_EXPORTS ON)
  vx_agent_options(${target})
  target_link_libraries(${target} PRIVATE vx_version)
  target_link_libraries(${target} PRIVATE
    -Wl,--whole-archive,$<TARGET_FILE:vx_driver>,--no-whole-archive
    -Wl,--start-group ${ARGN} vx_core vx_transport vx_sections vx_json vx_base ${platform}
    -Wl,--end-group)
endfunction()

# What ships: no C++ run-time library, which the switch does not have.
if(PLATFORM_LIBRARY)
  vx_agent_executable(vx_cloud core/main.cpp ${PLATFORM_LIBRARY})
  vx_agent_executable(vx_cloud_doctor doctor/main.cpp ${PLATFORM_LIBRARY} vx_doctor)
  foreach(program IN ITEMS vx_cloud vx_cloud_doctor)
    target_link_options(${program} PRIVATE ${VX_LINK_OPTIONS})
  endforeach()
endif()
