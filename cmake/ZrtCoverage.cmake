# The target coverage: reports the lines and branches that the tests have reached since they were built.
find_program(ZRT_GCOVR gcovr REQUIRED)

add_custom_target(coverage
  COMMAND "${CMAKE_COMMAND}" -E make_directory "${PROJECT_BINARY_DIR}/coverage"
  COMMAND "${ZRT_GCOVR}" --root "${PROJECT_SOURCE_DIR}" --object-directory "${PROJECT_BINARY_DIR}"
          --filter "${PROJECT_SOURCE_DIR}/src/" --filter "${PROJECT_SOURCE_DIR}/include/"
          --filter "${PROJECT_SOURCE_DIR}/outside/" --filter "${PROJECT_SOURCE_DIR}/tools/"
          --exclude-throw-branches --exclude-unreachable-branches
          --html-details "${PROJECT_BINARY_DIR}/coverage/index.html" --print-summary --txt
  WORKING_DIRECTORY "${PROJECT_BINARY_DIR}"
  COMMENT "Collecting what the tests reached"
  USES_TERMINAL VERBATIM)
