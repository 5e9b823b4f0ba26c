# The parts that need packages of others: host program, tests, benchmarks. The library needs none: a
# compiler and CMake are enough for it. So the option of a part is ON, OFF, or AUTO, which builds the
# part where its packages are found and else leaves it out with a word.

# zrt_part(OPTION DEFAULT WHAT PACKAGE=DEBIAN_PACKAGE...)
#
# Declares the option of the part WHAT and looks for its packages. In the calling directory OPTION is
# OFF from then on if the part is not to be built.
function(zrt_part option default what)
  set(${option} ${default} CACHE STRING "Build ${what}: ON, OFF, or AUTO (if its packages are found)")
  set_property(CACHE ${option} PROPERTY STRINGS AUTO ON OFF)
  if(NOT ${option})
    return()
  endif()
  set(missing "")
  foreach(entry IN LISTS ARGN)
    string(REPLACE "=" ";" entry "${entry}")
    list(GET entry 0 package)
    list(GET entry 1 debian_package)
    find_package(${package} QUIET)
    if(NOT ${package}_FOUND)
      list(APPEND missing "${package} (${debian_package} on Debian)")
    endif()
  endforeach()
  if(NOT missing)
    return()
  endif()
  list(JOIN missing ", " missing)
  if(NOT ${option} STREQUAL "AUTO")
    message(FATAL_ERROR "${option} is ${${option}}, but this is not found: ${missing}. "
                        "Install it, or set ${option} to OFF to build without ${what}.")
  endif()
  message(STATUS "Building without ${what}, since this is not found: ${missing}")
  set(${option} OFF PARENT_SCOPE)
endfunction()
