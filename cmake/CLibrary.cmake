# Reports the C library that a static program gets: a cross compiler may bring an unmaintained one.
set(c_library "unknown")
separate_arguments(flags UNIX_COMMAND "${CMAKE_CXX_FLAGS} ${CMAKE_EXE_LINKER_FLAGS}")
execute_process(COMMAND ${CMAKE_CXX_COMPILER} ${flags} -print-file-name=libc.a
                OUTPUT_VARIABLE archive OUTPUT_STRIP_TRAILING_WHITESPACE)
if(KESTO_STATIC AND EXISTS ${archive})
  file(STRINGS ${archive} banner REGEX "GNU C Library" LIMIT_COUNT 1)
  set(c_library "${archive} ${banner}")
endif()
message(STATUS "C library: ${c_library}")
