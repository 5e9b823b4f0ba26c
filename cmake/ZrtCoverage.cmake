# The target coverage: reports the lines and branches that the tests have reached since they were
# built, and fails if those of the library are fewer than docs/reliability.md promises. Edges that the
# compiler adds for exceptions are no branches of the code, and are left out; so is the library as the
# contract's tests compile it once more, since branches of two copies are not told apart. The preset
# leaves out the kernels for wider vectors, of which a machine runs one of two copies.
find_program(ZRT_GCOVR gcovr REQUIRED)

# docs/reliability.md tells what is missing.
set(zrt_coverage_dir "${PROJECT_BINARY_DIR}/coverage")
add_custom_target(coverage
  COMMAND "${CMAKE_COMMAND}" -E make_directory "${zrt_coverage_dir}"
  COMMAND "${ZRT_GCOVR}" --root "${PROJECT_SOURCE_DIR}" --object-directory "${PROJECT_BINARY_DIR}"
          --filter "${PROJECT_SOURCE_DIR}/src/" --filter "${PROJECT_SOURCE_DIR}/include/"
          --filter "${PROJECT_SOURCE_DIR}/outside/" --filter "${PROJECT_SOURCE_DIR}/tools/"
          --exclude-throw-branches --exclude-unreachable-branches
          --exclude-directories ".*/zrt_contract_[a-z]+[.]dir.*"
          --json "${zrt_coverage_dir}/all.json"
          --html-details "${zrt_coverage_dir}/index.html"
  COMMAND "${ZRT_GCOVR}" --root "${PROJECT_SOURCE_DIR}" --add-tracefile
          "${zrt_coverage_dir}/all.json"
          --filter "${PROJECT_SOURCE_DIR}/src/" --filter "${PROJECT_SOURCE_DIR}/include/"
          --print-summary --txt --fail-under-line 99 --fail-under-branch 96
  WORKING_DIRECTORY "${PROJECT_BINARY_DIR}"
  COMMENT "Collecting what the tests reached"
  USES_TERMINAL VERBATIM)
