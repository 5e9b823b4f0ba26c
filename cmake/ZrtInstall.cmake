# Installation, in three components: zrtexpression_runtime, the shared libraries and the error list;
# zrtexpression_development, what hosts are built with; zrtexpression_tool, the host program. Static and
# shared go into one prefix, from a build tree each. A host then says
#
#   find_package(zrtexpression 1.0 REQUIRED)
#   target_link_libraries(host PRIVATE zrtexpression::zrtexpression)
#
# with the build tree as good a place to find the package in as the prefix.
include(CMakePackageConfigHelpers)

set(zrt_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/zrtexpression")
set(zrt_kind static)
if(BUILD_SHARED_LIBS)
  set(zrt_kind shared)
endif()
set(zrt_has_stand_ins OFF)
if(ZRT_CLOSED_LIBRARIES STREQUAL "zrtoutside")
  set(zrt_has_stand_ins ON)
endif()

# zrt_install_library(TARGET HEADER_DIR)
function(zrt_install_library target header_dir)
  # A shared library is found beside its fellows, wherever the tree is moved to.
  set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN")
  install(TARGETS ${target} EXPORT zrtexpression-targets
          RUNTIME COMPONENT zrtexpression_runtime
          LIBRARY COMPONENT zrtexpression_runtime NAMELINK_COMPONENT zrtexpression_development
          ARCHIVE COMPONENT zrtexpression_development
          FILE_SET HEADERS DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${header_dir}"
                           COMPONENT zrtexpression_development)
endfunction()

# zrt_install_pkg_config(MODULE TEXT...): MODULE.pc, in which TEXT stands for what modules differ in.
# Its paths begin where the file itself lies, so that it moves with the prefix.
function(zrt_install_pkg_config module)
  set(prefix "${CMAKE_INSTALL_PREFIX}")
  if(NOT IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
    file(RELATIVE_PATH up "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
    string(REGEX REPLACE "/$" "" up "${up}")
    set(prefix "\${pcfiledir}/${up}")
  endif()
  cmake_path(APPEND libdir "\${prefix}" "${CMAKE_INSTALL_LIBDIR}")
  cmake_path(APPEND includedir "\${prefix}" "${CMAKE_INSTALL_INCLUDEDIR}")
  list(JOIN ARGN "\n" text)
  file(WRITE "${PROJECT_BINARY_DIR}/${module}.pc" "prefix=${prefix}
libdir=${libdir}
includedir=${includedir}

Version: ${PROJECT_VERSION}
${text}
")
  install(FILES "${PROJECT_BINARY_DIR}/${module}.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig"
          COMPONENT zrtexpression_development)
endfunction()

zrt_install_library(zrtexpression zrtexpression)
set(zrt_requires "")
if(zrt_has_stand_ins)
  # In a folder of their own: beside the library's, their names would hide those of the real ones.
  set_target_properties(zrtoutside PROPERTIES EXPORT_NAME outside)
  zrt_install_library(zrtoutside zrtexpression-outside)
  zrt_install_pkg_config(zrtexpression-outside
    "Name: zrtexpression-outside"
    "Description: Stand-ins of the closed libraries that zrtexpression calls"
    "Libs: -L\${libdir} -lzrtoutside"
    "Cflags: -I\${includedir}/zrtexpression-outside")
  set(zrt_requires "Requires: zrtexpression-outside = ${PROJECT_VERSION}")
endif()
zrt_install_pkg_config(zrtexpression
  "Name: zrtexpression"
  "Description: ${PROJECT_DESCRIPTION}"
  ${zrt_requires}
  "Libs: -L\${libdir} -lzrtexpression"
  "Cflags: -I\${includedir}/zrtexpression"
  "Cflags.private: -DZRT_STATIC")

install(EXPORT zrtexpression-targets FILE zrtexpression-${zrt_kind}-targets.cmake
        NAMESPACE zrtexpression:: DESTINATION "${zrt_package_dir}"
        COMPONENT zrtexpression_development)
if(zrt_has_stand_ins)  # else the build tree belongs to the host, which has no need of a package
  export(EXPORT zrtexpression-targets FILE zrtexpression-${zrt_kind}-targets.cmake
         NAMESPACE zrtexpression::)
endif()
configure_file(cmake/zrtexpressionConfig.cmake.in zrtexpressionConfig.cmake @ONLY)
write_basic_package_version_file(zrtexpressionConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/zrtexpressionConfig.cmake"
              "${PROJECT_BINARY_DIR}/zrtexpressionConfigVersion.cmake"
        DESTINATION "${zrt_package_dir}" COMPONENT zrtexpression_development)

install(FILES data/ErrorList.txt DESTINATION "${CMAKE_INSTALL_DATADIR}/zrtexpression"
        COMPONENT zrtexpression_runtime)
if(TARGET zrteval)
  file(RELATIVE_PATH zrt_bin_to_lib "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
  set_target_properties(zrteval PROPERTIES INSTALL_RPATH "$ORIGIN/${zrt_bin_to_lib}")
  install(TARGETS zrteval RUNTIME COMPONENT zrtexpression_tool)
  install(FILES data/example-scope.jsonc DESTINATION "${CMAKE_INSTALL_DATADIR}/zrtexpression"
          COMPONENT zrtexpression_tool)
  install(FILES tools/completion.bash RENAME zrteval COMPONENT zrtexpression_tool
          DESTINATION "${CMAKE_INSTALL_DATADIR}/bash-completion/completions")
  if(NOT CMAKE_CROSSCOMPILING)
    install(FILES "${PROJECT_BINARY_DIR}/tools/zrteval.1" DESTINATION "${CMAKE_INSTALL_MANDIR}/man1"
            COMPONENT zrtexpression_tool)
  endif()
endif()
