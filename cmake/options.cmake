# Flags that every target of this tree is built with. Nothing here reaches a host of the installed library.
add_library(lumo_strict INTERFACE)
target_compile_options(
  lumo_strict
  INTERFACE -Wall -Wextra -Wconversion -Wshadow -Werror
            # The sign of a cross product and a parameter of exactly 1 must not depend on fused multiply-add.
            -ffp-contract=off)
if(CMAKE_CXX_COMPILER_ID MATCHES Clang)
  # libstdc++ 12 calls std::get_temporary_buffer from its own stable_sort; clang reports that against the caller.
  target_compile_options(lumo_strict INTERFACE -Wno-deprecated-declarations)
endif()
if(LUMO_SANITIZE)
  target_compile_options(lumo_strict INTERFACE -fsanitize=${LUMO_SANITIZE} -fno-sanitize-recover=all
                                               -fno-omit-frame-pointer -g1)
  target_link_options(lumo_strict INTERFACE -fsanitize=${LUMO_SANITIZE})
endif()
if(MINGW)
  target_compile_options(lumo_strict INTERFACE -include ${PROJECT_SOURCE_DIR}/cmake/without_near_and_far.h)
  # M_PI and its kin, which the other platforms define as they are.
  target_compile_definitions(lumo_strict INTERFACE _USE_MATH_DEFINES)
  # The compiler's runtime and its thread library become part of each binary: a host needs liblumo.dll alone.
  target_link_options(lumo_strict INTERFACE -static)
endif()
