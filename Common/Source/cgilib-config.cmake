include(${CMAKE_CURRENT_LIST_DIR}/cgilib-targets.cmake)

# For projects that already use the plain name.
if(NOT TARGET cgilib)
  add_library(cgilib INTERFACE IMPORTED)
  set_target_properties(cgilib PROPERTIES INTERFACE_LINK_LIBRARIES cgilib::cgilib)
endif()
