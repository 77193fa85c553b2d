# SPDX-License-Identifier: MIT
# Most of what the compiler does here is to read headers. A clean build takes a third less when it
# reads them less often: sources of a library are compiled several at once, and the standard headers
# of what cannot be put together are compiled once for a target. Not with a compiler cache, which
# does better without, and not in the presets whose sources others name or read one by one.
if(CMAKE_CXX_COMPILER_LAUNCHER)
  set(quick OFF)
else()
  set(quick ON)
endif()
option(OPENQUIL_QUICK_CLEAN_BUILD "compile sources together, and standard headers once" ${quick})

# Compiles the target's sources fourteen at once. They have no two names alike, but for `ALONE` ones.
function(compile_together target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "ALONE")
  if(OPENQUIL_QUICK_CLEAN_BUILD)
    set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_BATCH_SIZE 14)
    set_source_files_properties(${arg_ALONE} PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
    # The compiler takes a source that another includes for a header.
    target_compile_options(${target} PRIVATE -Wno-subobject-linkage)
  endif()
endfunction()

# Gives the target further headers, and the usual standard ones. Its sources include what they need
# all the same.
function(precompile_headers target)
  if(OPENQUIL_QUICK_CLEAN_BUILD)
    target_precompile_headers(${target} PRIVATE ${ARGN} <algorithm> <array> <atomic> <cmath>
      <filesystem> <fstream> <functional> <map> <memory> <mutex> <optional> <span> <string>
      <string_view> <unordered_map> <vector>)
  endif()
endfunction()
