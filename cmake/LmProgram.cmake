# lm_add_program(<name> [INTERNALS] <sources...>): a program of the project's
# own (test, benchmark, fuzzer) linked to the shared library, or with INTERNALS
# to the archive of the same objects, for code the shared library does not
# export. Such programs may include the library's private headers.
function(lm_add_program name)
  cmake_parse_arguments(PARSE_ARGV 1 _lm "INTERNALS" "" "")
  add_executable(${name} ${_lm_UNPARSED_ARGUMENTS})
  if(_lm_INTERNALS)
    target_link_libraries(${name} PRIVATE lmspatialreference_internal)
  else()
    target_link_libraries(${name} PRIVATE lmspatialreference)
  endif()
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR})
  lm_apply_compiler_options(${name})
endfunction()
