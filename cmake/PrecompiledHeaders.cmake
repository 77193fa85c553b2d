# SPDX-License-Identifier: MIT
# Half of what the compiler does here is to read the standard headers; compiled once for a target,
# they cost little. Not with a compiler cache, which keeps nothing of files that use them, and not
# where other tools read the compile commands (the debug preset): these headers are GCC's own.
if(CMAKE_CXX_COMPILER_LAUNCHER)
  set(precompiled_headers OFF)
else()
  set(precompiled_headers ON)
endif()
option(OPENQUIL_PRECOMPILED_HEADERS "precompile the standard headers" ${precompiled_headers})

# Gives the target further headers, and the usual standard ones. Its sources include what they need
# all the same.
function(precompile_headers target)
  if(OPENQUIL_PRECOMPILED_HEADERS)
    target_precompile_headers(${target} PRIVATE ${ARGN} <algorithm> <array> <atomic> <cmath>
      <filesystem> <fstream> <functional> <map> <memory> <mutex> <optional> <span> <string>
      <string_view> <unordered_map> <vector>)
  endif()
endfunction()
