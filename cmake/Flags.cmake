# Compiler and linker flags of every target of the project.
set(CMAKE_CXX_STANDARD 17)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_C_STANDARD 11)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
set(CMAKE_C_FLAGS_RELEASE "-O2 -DNDEBUG")

add_compile_options(-Wall -Wextra -Wshadow -Wconversion)
if(KESTO_WERROR)
  add_compile_options(-Werror)
endif()

# File names in the binary read from the project root, wherever the build directory is.
add_compile_options(-ffile-prefix-map=${CMAKE_SOURCE_DIR}/=)

# Offsets and times are 64 bits wide on 32-bit targets too: an upload may pass 2 GiB.
add_compile_definitions(_FILE_OFFSET_BITS=64 _TIME_BITS=64)

# One section a function, so that the linker drops what no path reaches.
add_compile_options(-ffunction-sections -fdata-sections)
add_link_options(-Wl,--gc-sections)

if(KESTO_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(KESTO_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
if(KESTO_STATIC)
  add_link_options(-static)
endif()
