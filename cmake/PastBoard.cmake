# Clang's run-time libraries that share a program with the agent but are no part of it: their files
# are the workstation's, not the simulated board's.
include(Edges)

function(vx_ask_compiler question answer)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} ${question} OUTPUT_VARIABLE said
                  OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  set(${answer} ${said} PARENT_SCOPE)
endfunction()

# vx_runtime_past_board(<result> <name>): a copy of Clang's library <name> that calls past the board,
# for programs that are linked with it.
function(vx_runtime_past_board result name)
  vx_ask_compiler(-print-runtime-dir runtime_dir)
  vx_ask_compiler(-print-resource-dir resource_dir)
  find_file(VX_RUNTIME_${name} REQUIRED NO_DEFAULT_PATH
            NAMES libclang_rt.${name}-${CMAKE_SYSTEM_PROCESSOR}.a libclang_rt.${name}.a
            PATHS ${runtime_dir} ${resource_dir}/lib/linux)
  set(copy ${CMAKE_BINARY_DIR}/past_board/lib${name}.a)
  file(MAKE_DIRECTORY ${CMAKE_BINARY_DIR}/past_board)
  list(TRANSFORM VX_EDGES REPLACE "(.+)" "--redefine-sym=\\1=__real_\\1" OUTPUT_VARIABLE past_board)
  execute_process(COMMAND ${CMAKE_OBJCOPY} ${past_board} ${VX_RUNTIME_${name}} ${copy}
                  COMMAND_ERROR_IS_FATAL ANY)
  set(${result} ${copy} PARENT_SCOPE)
endfunction()
