# Compiler and linker flags for every target of the project.
include(CheckCXXCompilerFlag)
include(CheckCXXSourceCompiles)

set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

# CMake's own choice, -O3, makes the program larger and not faster, except together with link-time
# optimisation. A choice by the user or the toolchain file is kept.
foreach(language C CXX)
  if(NOT CMAKE_INTERPROCEDURAL_OPTIMIZATION AND NOT RELEASE_FLAGS_GIVEN
     AND CMAKE_${language}_FLAGS_RELEASE STREQUAL "-O3 -DNDEBUG")
    set(CMAKE_${language}_FLAGS_RELEASE "-O2 -DNDEBUG")
  endif()
endforeach()

if(CMAKE_INTERPROCEDURAL_OPTIMIZATION AND CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  # Its own limits leave calls in the loops over every byte of a document: a seventh of a request's
  # instructions. The program grows by a tenth.
  foreach(limit max-inline-insns-auto=300 inline-unit-growth=300)
    string(MAKE_C_IDENTIFIER HAVE_${limit} have)
    check_cxx_compiler_flag(--param=${limit} ${have})
    if(${have})
      add_compile_options(--param=${limit})
    endif()
  endforeach()
endif()

add_compile_options(-Wall -Wextra -Wshadow -Wconversion)
if(KESTO_WERROR)
  add_compile_options(-Werror)
endif()

# File names in the binary are relative to the project root, wherever the build directory is.
add_compile_options(-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=)

# Offsets and times are 64 bits wide on 32-bit targets too: an upload may exceed 2 GiB.
add_compile_definitions(_FILE_OFFSET_BITS=64 _TIME_BITS=64)

# One section per function or variable, so that the linker can drop everything unreachable.
add_compile_options(-ffunction-sections -fdata-sections)
add_link_options(-Wl,--gc-sections)

# A bug that we have missed ends the process and gets no further. The linker's part: data that
# relocation has filled in becomes read-only, and no page is both writable and executable.
add_compile_options(-fstack-protector-strong)
add_link_options(-Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
foreach(flag -fstack-clash-protection -fcf-protection -ftrivial-auto-var-init=zero)
  # -fcf-protection exists for x86 only, and GCC 12 has no equivalent for 32-bit ARM.
  string(MAKE_C_IDENTIFIER "HAVE${flag}" have)
  check_cxx_compiler_flag(${flag} ${have})
  if(${have})
    add_compile_options(${flag})
  endif()
endforeach()
if(NOT CMAKE_BUILD_TYPE STREQUAL Debug AND NOT KESTO_SANITIZE)
  # Needs optimisation, and would take checks away from the sanitizers.
  # Level 3 needs a C library and a compiler that support it; others warn.
  set(CMAKE_REQUIRED_FLAGS "-O2 -Werror -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=3")
  check_cxx_source_compiles("#include <cstdio>\nint main() {}" HAVE_FORTIFY_3)
  unset(CMAKE_REQUIRED_FLAGS)
  set(fortify_level 2)
  if(HAVE_FORTIFY_3)
    set(fortify_level 3)
  endif()
  add_compile_options(-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=${fortify_level})
endif()
# Position-independent code everywhere, since other projects' executables link our archives too. A
# static program still starts at a fixed address: relocating itself would take 4 % of the processor
# time of a small request, and Debian's armhf C library cannot do it.
add_compile_options(-fPIE)
if(NOT KESTO_STATIC)
  add_link_options(-pie)
endif()

if(KESTO_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(KESTO_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
if(KESTO_STATIC)
  add_link_options(-static)
endif()
