# The XML libraries, as the targets xml::tinyxml and xml::pugixml. Each is looked for where headers and
# libraries usually are (CMAKE_PREFIX_PATH and CMAKE_FIND_ROOT_PATH included), then where pkg-config
# says, then in a CMake package. The last two alone would not do: pkg-config names the shared
# libraries, and not everybody's TinyXML comes with either.
include(CheckCXXSourceCompiles)
find_package(PkgConfig QUIET)

macro(find_files)
  find_path(${upper}_INCLUDE_DIR ${header} HINTS ${${upper}_PC_INCLUDE_DIRS})
  find_library(${upper}_LIBRARY ${name} HINTS ${${upper}_PC_LIBDIR} ${${upper}_PC_LIBRARY_DIRS})
  set(found OFF)
  if(${upper}_INCLUDE_DIR AND ${upper}_LIBRARY)
    set(found ON)
  endif()
endmacro()

function(use_files)
  add_library(xml::${name} UNKNOWN IMPORTED)
  set_target_properties(xml::${name} PROPERTIES
    IMPORTED_LOCATION "${${upper}_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${${upper}_INCLUDE_DIR}")
endfunction()

# Fails where the package has nothing but a shared library and a static one is wanted.
function(use_package)
  find_package(${name} CONFIG QUIET)
  foreach(candidate ${name}::static ${name}::${name} ${name}::shared ${name})
    if(TARGET ${candidate})
      get_target_property(library ${candidate} INTERFACE_LINK_LIBRARIES) # a name for another target?
      if(NOT TARGET "${library}")
        set(library ${candidate})
      endif()
      get_target_property(type ${library} TYPE)
      if(type STREQUAL SHARED_LIBRARY AND KESTO_STATIC)
        need_archive(${library})
      endif()
      add_library(xml::${name} INTERFACE IMPORTED)
      set_property(TARGET xml::${name} PROPERTY INTERFACE_LINK_LIBRARIES ${candidate})
      return()
    endif()
  endforeach()
endfunction()

function(need_archive shared)
  message(FATAL_ERROR "Of ${name} there is only a shared library (${shared}). "
                      "Install lib${name}.a, or link dynamically with -DKESTO_STATIC=OFF.")
endfunction()

function(find_xml_library name header)
  string(TOUPPER ${name} upper)
  set(any_suffix ${CMAKE_FIND_LIBRARY_SUFFIXES})
  if(KESTO_STATIC)
    set(CMAKE_FIND_LIBRARY_SUFFIXES .a)
    if(${upper}_LIBRARY MATCHES "\\.so") # from before KESTO_STATIC was set
      unset(${upper}_LIBRARY CACHE)
    endif()
  endif()

  find_files()
  if(NOT found AND PKG_CONFIG_FOUND)
    pkg_check_modules(${upper}_PC QUIET ${name})
    find_files()
  endif()
  if(found)
    use_files()
    return()
  endif()
  use_package()
  if(TARGET xml::${name})
    return()
  endif()

  set(CMAKE_FIND_LIBRARY_SUFFIXES ${any_suffix})
  find_files()
  if(found)
    set(shared "${${upper}_LIBRARY}")
    unset(${upper}_LIBRARY CACHE)
    need_archive("${shared}")
  endif()
  message(FATAL_ERROR "${name} is missing (${header}, lib${name}): install it, on Debian "
                      "lib${name}-dev, or name its prefix in CMAKE_PREFIX_PATH.")
endfunction()

# Ends the configuration with a reason, where the linker or the running program would fail with none.
function(require_linking result source reason)
  if(KESTO_STATIC)
    set(CMAKE_REQUIRED_LINK_OPTIONS -static)
  endif()
  set(CMAKE_REQUIRED_LIBRARIES ${ARGN})
  check_cxx_source_compiles("${source}" ${result})
  if(NOT ${result})
    unset(${result} CACHE)
    message(FATAL_ERROR "${reason}")
  endif()
endfunction()

if(KESTO_STATIC)
  require_linking(LINKS_STATICALLY "int main() {}"
    "The C and C++ libraries cannot be linked statically here: install their archives (libc.a, \
libstdc++.a), or link dynamically with -DKESTO_STATIC=OFF.")
endif()

find_xml_library(tinyxml tinyxml.h)
find_xml_library(pugixml pugixml.hpp)

# The header as its author ships it leaves it to the user whether texts are std::string; what the
# library was built with has to agree.
set_property(TARGET xml::tinyxml PROPERTY INTERFACE_COMPILE_DEFINITIONS TIXML_USE_STL)
require_linking(TINYXML_USES_STL "#include <tinyxml.h>
int main() { std::string text; TiXmlBase::EncodeString(text, &text); }"
  "TinyXML does not work with std::string: build it with TIXML_USE_STL defined." xml::tinyxml)
