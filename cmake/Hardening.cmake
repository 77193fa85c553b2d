# SPDX-License-Identifier: MIT
# What makes a memory fault hard to exploit, for all that is built: stack protectors, checked calls
# of the C library, and tables of the loader that are read-only before the first line of ours runs.
add_compile_options(-fstack-protector-strong)
# Checked calls need an optimised build, and would hide calls from the sanitizers.
if(NOT OPENQUIL_SANITIZERS)
  add_compile_options(
    "$<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
endif()
add_link_options(-Wl,-z,relro,-z,now)
