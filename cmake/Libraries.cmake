# The XML libraries, as the targets xml::tinyxml and xml::pugixml. Each is looked for in the usual
# places for headers and libraries (including CMAKE_PREFIX_PATH and CMAKE_FIND_ROOT_PATH), then
# where pkg-config says.

# A pkg-config that nobody has pointed elsewhere knows the build machine's libraries only.
set(pkg_config_target "${PKG_CONFIG_EXECUTABLE}$ENV{PKG_CONFIG}$ENV{PKG_CONFIG_PATH}\
$ENV{PKG_CONFIG_LIBDIR}$ENV{PKG_CONFIG_SYSROOT_DIR}")
if(NOT CMAKE_CROSSCOMPILING OR pkg_config_target)
  find_package(PkgConfig QUIET)
else()
  set(pkg_config_hint " pkg-config was not asked: no variable such as PKG_CONFIG_LIBDIR points it\
 to the libraries of the other machine.")
endif()

function(find_xml_library name header)
  string(TOUPPER ${name} upper)
  if(PKG_CONFIG_FOUND)
    pkg_check_modules(${upper}_PC QUIET ${name})
  endif()
  if(KESTO_STATIC)
    set(CMAKE_FIND_LIBRARY_SUFFIXES .a)
    if(${upper}_LIBRARY MATCHES "\\.so") # from before KESTO_STATIC was set
      unset(${upper}_LIBRARY CACHE)
    endif()
  endif()
  find_path(${upper}_INCLUDE_DIR ${header} PATHS ${${upper}_PC_INCLUDE_DIRS})
  find_library(${upper}_LIBRARY ${name} PATHS ${${upper}_PC_LIBDIR} ${${upper}_PC_LIBRARY_DIRS})
  if(NOT ${upper}_INCLUDE_DIR OR NOT ${upper}_LIBRARY)
    message(FATAL_ERROR "${name} is missing (${header}, lib${name}${CMAKE_FIND_LIBRARY_SUFFIXES}).\
 Install it (on Debian, lib${name}-dev), add its prefix to CMAKE_PREFIX_PATH, set\
 ${upper}_INCLUDE_DIR and ${upper}_LIBRARY, or have it built from the sources that\
 KESTO_${upper}_SOURCE points to. If there is only a shared library, link dynamically with\
 -DKESTO_STATIC=OFF.${pkg_config_hint}")
  endif()
  add_library(xml::${name} UNKNOWN IMPORTED)
  set_target_properties(xml::${name} PROPERTIES
    IMPORTED_LOCATION "${${upper}_LIBRARY}"
    INTERFACE_INCLUDE_DIRECTORIES "${${upper}_INCLUDE_DIR}")
endfunction()

# Builds one of the libraries from its sources, with this project's flags except for its warnings.
function(build_xml_library name folder)
  foreach(file ${ARGN})
    if(NOT EXISTS ${folder}/${file})
      string(TOUPPER ${name} upper)
      message(FATAL_ERROR "KESTO_${upper}_SOURCE points to ${folder}, which contains no ${file}. On\
 Debian, \"tools/fetch sources\" gets the sources that the presets name.")
    endif()
  endforeach()
  list(TRANSFORM ARGN PREPEND ${folder}/)
  add_library(built_${name} STATIC ${ARGN})
  target_compile_options(built_${name} PRIVATE -w)
  target_include_directories(built_${name} SYSTEM PUBLIC ${folder})
  add_library(xml::${name} ALIAS built_${name})
endfunction()

# Stops the configuration with a reason and the linker's output, where linking the program itself
# would fail without a reason.
function(require_linking result source reason)
  if(${result})
    return()
  endif()
  set(test ${CMAKE_BINARY_DIR}/CMakeFiles/link_test)
  file(WRITE ${test}.cpp "${source}\n")
  try_compile(${result} ${test} SOURCES ${test}.cpp LINK_LIBRARIES ${ARGN} OUTPUT_VARIABLE output
              LINK_OPTIONS $<$<BOOL:${KESTO_STATIC}>:-static>)
  if(NOT ${result})
    message(FATAL_ERROR "${reason}\n${output}")
  endif()
endfunction()

# The same for a library that was found: what the program uses of it can be linked.
function(require_xml_library name result source feature fault)
  string(TOUPPER ${name} upper)
  require_linking(${result} "${source}"
    "${name} (${${upper}_LIBRARY}) cannot be linked with ${feature}: it is for another machine, it\
 was built ${fault}, or it was built with another C++ library (libc++ and libstdc++ do not mix)."
    xml::${name})
endfunction()

if(KESTO_STATIC)
  require_linking(LINKS_STATICALLY "int main() {}"
    "The C and C++ libraries cannot be linked statically here: install their archives (libc.a, \
libstdc++.a), or link dynamically with -DKESTO_STATIC=OFF.")
endif()

if(KESTO_PUGIXML_SOURCE)
  build_xml_library(pugixml ${KESTO_PUGIXML_SOURCE}/src pugixml.hpp pugiconfig.hpp pugixml.cpp)
  if(HAVE_ftrivial_auto_var_init_zero)
    # An evaluation has 8 KiB of buffers on the stack; to clear them is 6 % of an expression's
    # instructions.
    target_compile_options(built_pugixml PRIVATE -ftrivial-auto-var-init=uninitialized)
  endif()
else()
  find_xml_library(pugixml pugixml.hpp)
  require_xml_library(pugixml PUGIXML_HAS_XPATH "#include <pugixml.hpp>
int main() { try { pugi::xpath_query(\"/\"); } catch (const pugi::xpath_exception&) {} }"
    "XPath expressions and exceptions" "with PUGIXML_NO_XPATH or PUGIXML_NO_EXCEPTIONS")
endif()

# TinyXML's upstream header lets the user choose whether texts are std::string; the choice must
# match what the library was built with.
if(KESTO_TINYXML_SOURCE)
  build_xml_library(tinyxml ${KESTO_TINYXML_SOURCE}
                    tinyxml.h tinyxml.cpp tinyxmlerror.cpp tinyxmlparser.cpp)
  target_compile_definitions(built_tinyxml PUBLIC TIXML_USE_STL)
  target_include_directories(built_tinyxml PRIVATE ${CMAKE_CURRENT_LIST_DIR})
  target_compile_options(built_tinyxml PRIVATE "SHELL:-include characters.h")
else()
  find_xml_library(tinyxml tinyxml.h)
  set_property(TARGET xml::tinyxml PROPERTY INTERFACE_COMPILE_DEFINITIONS TIXML_USE_STL)
  require_xml_library(tinyxml TINYXML_USES_STL "#include <tinyxml.h>
int main() { std::string text; TiXmlBase::EncodeString(text, &text); }"
    "std::string" "without TIXML_USE_STL")
endif()
