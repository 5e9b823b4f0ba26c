# Installation: library, headers, package files, the host program and the error list. A host then says
#
#   find_package(zrtexpression 1.0 REQUIRED)
#   target_link_libraries(host PRIVATE zrtexpression::zrtexpression)
include(CMakePackageConfigHelpers)

set(zrt_include_dir "${CMAKE_INSTALL_INCLUDEDIR}/zrtexpression")
set(zrt_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/zrtexpression")

set_target_properties(zrtoutside PROPERTIES EXPORT_NAME outside)

# A shared library is found beside its fellows and from bin/, wherever the tree is moved to.
file(RELATIVE_PATH zrt_bin_to_lib "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
set_target_properties(zrtexpression PROPERTIES INSTALL_RPATH "$ORIGIN")
if(TARGET zrteval)
  set_target_properties(zrteval PROPERTIES INSTALL_RPATH "$ORIGIN/${zrt_bin_to_lib}")
  install(TARGETS zrteval RUNTIME)
endif()

install(TARGETS zrtexpression zrtoutside EXPORT zrtexpressionTargets
        INCLUDES DESTINATION "${zrt_include_dir}")
install(DIRECTORY include/ outside/ DESTINATION "${zrt_include_dir}"
        FILES_MATCHING PATTERN "*.h")
install(FILES data/ErrorList.txt data/example-scope.jsonc
        DESTINATION "${CMAKE_INSTALL_DATADIR}/zrtexpression")

install(EXPORT zrtexpressionTargets NAMESPACE zrtexpression:: DESTINATION "${zrt_package_dir}")
configure_package_config_file(cmake/zrtexpressionConfig.cmake.in zrtexpressionConfig.cmake
  INSTALL_DESTINATION "${zrt_package_dir}")
write_basic_package_version_file(zrtexpressionConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(FILES "${CMAKE_CURRENT_BINARY_DIR}/zrtexpressionConfig.cmake"
              "${CMAKE_CURRENT_BINARY_DIR}/zrtexpressionConfigVersion.cmake"
        DESTINATION "${zrt_package_dir}")
