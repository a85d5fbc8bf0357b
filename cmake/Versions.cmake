# Lists the libraries in the program with their versions, for the version line and the bill of
# materials, so that a known vulnerability can be matched to a device in the field. A library that
# is linked dynamically is not in the program.
set(bundled_libraries "") # "name version" for each
find_program(DPKG_QUERY dpkg-query)

# Adds an XML library, unless it is linked dynamically: with Debian's version if it or its sources
# come from there, otherwise with the given one.
function(bundle_xml_library name upstream_version)
  string(TOUPPER ${name} upper)
  set(folder ${KESTO_${upper}_SOURCE})
  set(heading "")
  if(folder AND EXISTS ${folder}/debian/changelog)
    file(STRINGS ${folder}/debian/changelog heading LIMIT_COUNT 1)
  elseif(NOT folder AND DPKG_QUERY)
    execute_process(COMMAND ${DPKG_QUERY} -S ${${upper}_LIBRARY} OUTPUT_VARIABLE owner ERROR_QUIET)
    if(owner MATCHES "^(.+): /")
      execute_process(COMMAND ${DPKG_QUERY} -W -f "(\${source:Version})" ${CMAKE_MATCH_1}
                      OUTPUT_VARIABLE heading ERROR_QUIET)
    endif()
  endif()
  set(version ${upstream_version})
  if(heading MATCHES "\\(([^)]+)\\)")
    set(version ${CMAKE_MATCH_1})
  endif()
  if(folder OR KESTO_STATIC)
    set(bundled_libraries ${bundled_libraries} "${name} ${version}" PARENT_SCOPE)
  endif()
endfunction()

# The numbers in the header's lines that match.
function(header_numbers result target header regex)
  get_target_property(folder ${target} INTERFACE_INCLUDE_DIRECTORIES)
  file(STRINGS ${folder}/${header} lines REGEX ${regex})
  string(REGEX MATCHALL "[0-9]+" numbers "${lines}")
  set(${result} ${numbers} PARENT_SCOPE)
endfunction()

header_numbers(numbers xml::tinyxml tinyxml.h "TIXML_(MAJOR|MINOR|PATCH)_VERSION = ")
list(JOIN numbers . version)
bundle_xml_library(tinyxml ${version})
header_numbers(numbers xml::pugixml pugixml.hpp "define PUGIXML_VERSION")
list(GET numbers 0 number) # 1130 is 1.13
math(EXPR major "${number} / 1000")
math(EXPR minor "${number} % 1000 / 10")
bundle_xml_library(pugixml ${major}.${minor})

# The C library names its version in a banner. A cross compiler may bring one that nobody maintains.
separate_arguments(flags UNIX_COMMAND "${CMAKE_CXX_FLAGS} ${CMAKE_EXE_LINKER_FLAGS}")
execute_process(COMMAND ${CMAKE_CXX_COMPILER} ${flags} -print-file-name=libc.a
                OUTPUT_VARIABLE archive OUTPUT_STRIP_TRAILING_WHITESPACE)
if(KESTO_STATIC)
  file(STRINGS ${archive} banner REGEX "GNU C Library" LIMIT_COUNT 1)
  if(banner MATCHES "Debian GLIBC ([^)]+)|version ([0-9.]+[0-9])")
    list(APPEND bundled_libraries "glibc ${CMAKE_MATCH_1}${CMAKE_MATCH_2}")
  else()
    list(APPEND bundled_libraries "c-library unknown")
  endif()
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
    list(APPEND bundled_libraries "libstdc++ ${CMAKE_CXX_COMPILER_VERSION}")
  else()
    list(APPEND bundled_libraries "c++-library unknown")
  endif()
endif()

set(version_line "${PROJECT_NAME} ${full_version}")
if(bundled_libraries)
  list(JOIN bundled_libraries ", " versions)
  string(APPEND version_line " (${versions})")
endif()
message(STATUS "The program is ${version_line}")
