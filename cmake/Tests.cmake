# tavlyn_add_tests(PROGRAM [SHARDS N] [PROPERTIES ...]): a GoogleTest program, run as a whole or as N shards in
# parallel. A process for each test would cost more than most tests do.
function(tavlyn_add_tests program)
  cmake_parse_arguments(PARSE_ARGV 1 wanted "" SHARDS PROPERTIES)
  if(NOT wanted_SHARDS)
    set(wanted_SHARDS 1)
  endif()
  foreach(shard RANGE 1 ${wanted_SHARDS})
    set(name ${program})
    if(wanted_SHARDS GREATER 1)
      set(name ${program}.${shard})
    endif()
    math(EXPR index "${shard} - 1")
    add_test(NAME ${name} COMMAND ${program})
    set_tests_properties(${name} PROPERTIES
      ENVIRONMENT "GTEST_TOTAL_SHARDS=${wanted_SHARDS};GTEST_SHARD_INDEX=${index}" ${wanted_PROPERTIES})
  endforeach()
endfunction()
