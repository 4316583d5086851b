# A folder of the project is a target, and a folder's headers can be included only by targets that
# link it: each target gets an include directory of its own, holding a link to its folder.

# vx_expose(<target> <folder> <scope>): headers of <folder> become "<folder>/x.h" for whoever links
# <target>.
function(vx_expose target folder scope)
  set(root ${CMAKE_BINARY_DIR}/include/${target})
  get_filename_component(parent ${root}/${folder} DIRECTORY)
  file(MAKE_DIRECTORY ${parent})
  file(CREATE_LINK ${CMAKE_SOURCE_DIR}/${folder} ${root}/${folder} SYMBOLIC)
  target_include_directories(${target} ${scope} ${root})
endfunction()

# How the agent is made small; packaging/mips/sizes.sh prints what it brings.
set(VX_VISIBILITY hidden CACHE STRING "Of the agent's names, but for the driver functions")
set(VX_LINK_OPTIONS -Wl,--as-needed -Wl,--gc-sections -static-libgcc CACHE STRING
    "How what ships is linked")

# vx_agent_options(<target>): the agent is C with namespaces and types: C++17, no exceptions, no
# run-time types, nothing that would need the C++ run-time library on the switch.
function(vx_agent_options target)
  set_target_properties(${target} PROPERTIES
    CXX_STANDARD 17 CXX_VISIBILITY_PRESET ${VX_VISIBILITY})
  target_compile_options(${target} PRIVATE
    $<$<COMPILE_LANGUAGE:CXX>:-fno-exceptions;-fno-rtti;-fno-threadsafe-statics>
    -Wconversion -Wno-sign-conversion -ffunction-sections -fdata-sections)
  # What is under test runs optimised even where the tests around it are not, which compile faster.
  if(VX_SANITIZE)
    target_compile_options(${target} PRIVATE -O1)
  endif()
  if(VX_COVERAGE)
    target_compile_options(${target} PRIVATE -fprofile-instr-generate -fcoverage-mapping)
  endif()
  # Lets the fuzz targets see which way an input took; AddressSanitizer brings the other half.
  if(CMAKE_CXX_COMPILER_ID MATCHES Clang AND VX_SANITIZE MATCHES address)
    target_compile_options(${target} PRIVATE -fsanitize=fuzzer-no-link)
  endif()
endfunction()

# vx_agent_layer(<target> <folder> [linked layers...]): every source of <folder> and the folders in
# it is in it.
function(vx_agent_layer target folder)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${folder}/*.cpp)
  add_library(${target} STATIC ${sources})
  set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX)
  vx_expose(${target} ${folder} PUBLIC)
  vx_agent_options(${target})
  target_link_libraries(${target} PUBLIC ${ARGN})
endfunction()
