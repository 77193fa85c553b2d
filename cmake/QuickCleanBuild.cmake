# SPDX-License-Identifier: MIT
# Most of what the compiler does here is to read headers. A clean build is shorter when it reads
# them less often: sources of a library are compiled several at once, and the standard headers
# of what cannot be put together are compiled once for a target. Not with a compiler cache, which
# does better without, and not in the presets whose sources others name or read one by one.
if(CMAKE_CXX_COMPILER_LAUNCHER)
  set(quick OFF)
else()
  set(quick ON)
endif()
option(OPENQUIL_QUICK_CLEAN_BUILD "compile sources together, and standard headers once" ${quick})

# The compiler looks for memory to use again when it has half a gigabyte, not after each 128 MB.
if(OPENQUIL_QUICK_CLEAN_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  add_compile_options(--param=ggc-min-heapsize=524288)
endif()

# For what runs once or waits for others: half of the time to compile. It starts in as many
# instructions; what it calls often takes up to a tenth more, as calls that `quilhost --stats` tells.
set(OPENQUIL_LIGHT_OPTIMIZATION "$<$<CONFIG:Release>:-Og>")

# Compiles the target's sources together, in as many parts as there are processors, of twenty
# sources or more. They have no two names alike, but for `ALONE` ones.
cmake_host_system_information(RESULT processors QUERY NUMBER_OF_LOGICAL_CORES)
function(compile_together target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "ALONE")
  if(OPENQUIL_QUICK_CLEAN_BUILD)
    get_target_property(sources ${target} SOURCES)
    list(LENGTH sources count)
    math(EXPR part "(${count} + ${processors} - 1) / ${processors}")
    if(part LESS 20)
      set(part 20)
    endif()
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE ${part})
    set_source_files_properties(${arg_ALONE} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    # The compiler takes a source that another includes for a header.
    target_compile_options(${target} PRIVATE -Wno-subobject-linkage)
  endif()
endfunction()

# Compiles headers, and the standard ones that most sources need, once for the target. Its sources
# include what they need all the same.
function(precompile_headers target)
  if(OPENQUIL_QUICK_CLEAN_BUILD)
    target_precompile_headers(${target} PRIVATE ${ARGN} <algorithm> <cstring> <memory> <string>
      <string_view> <vector>)
  endif()
endfunction()
