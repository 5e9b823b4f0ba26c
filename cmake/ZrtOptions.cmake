# zrt_options: the warnings and instrumentation that each target of this project links privately.
# Nothing here reaches a host that takes the library in with add_subdirectory or find_package.
#
#   target_link_libraries(my_target PRIVATE zrt_options)
#   zrt_use_options(my_library)   # for what is exported: the library does not name zrt_options then

add_library(zrt_options INTERFACE)

set(zrt_gcc "$<CXX_COMPILER_ID:GNU>")
set(zrt_clang "$<CXX_COMPILER_ID:Clang,AppleClang>")

# Off: -Wrestrict, which GCC 12 and 13 report falsely for "text" + std::string.
# Not among them: -Woverloaded-virtual, since the given stream hides its base's operation on purpose,
# and -Wnon-virtual-dtor, since the byte blocks of the contract are deleted by their own type and have
# virtual operations but no virtual destructor. Of such deletions clang warns even inside containers.
target_compile_options(zrt_options INTERFACE
  "$<$<OR:${zrt_gcc},${zrt_clang}>:-Wall;-Wextra;-Wpedantic;-Wshadow;-Wconversion;-Wsign-conversion>"
  "$<$<OR:${zrt_gcc},${zrt_clang}>:-Wold-style-cast;-Wcast-qual;-Wcast-align;-Wformat=2;-Wundef>"
  "$<$<OR:${zrt_gcc},${zrt_clang}>:-Wextra-semi;-Wimplicit-fallthrough>"
  "$<${zrt_gcc}:-Wduplicated-cond;-Wduplicated-branches;-Wlogical-op>"
  "$<$<AND:${zrt_gcc},$<VERSION_LESS:$<CXX_COMPILER_VERSION>,14>>:-Wno-restrict>"
  "$<${zrt_clang}:-Wcomma;-Wunreachable-code;-Wnewline-eof>"
  "$<${zrt_clang}:-Wno-delete-non-abstract-non-virtual-dtor>"
  "$<$<BOOL:${ZRT_WARNINGS_AS_ERRORS}>:-Werror>")

# The standard library's own cheap checks of bounds and empty containers.
target_compile_definitions(zrt_options INTERFACE "$<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>")

if(ZRT_SANITIZE)
  # GCC loses its way in instrumented code and reports -Wmaybe-uninitialized in its own library.
  target_compile_options(zrt_options INTERFACE "$<${zrt_gcc}:-Wno-maybe-uninitialized>")
  # Findings end the program, so that no test passes over them. Some optimisation keeps the tests of
  # large vectors bearable.
  target_compile_options(zrt_options INTERFACE $<$<CONFIG:Debug>:-O1>
    "-fsanitize=${ZRT_SANITIZE}" -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(zrt_options INTERFACE "-fsanitize=${ZRT_SANITIZE}")
endif()

if(ZRT_COVERAGE)
  target_compile_options(zrt_options INTERFACE --coverage -fprofile-update=atomic)
  target_link_options(zrt_options INTERFACE --coverage)
endif()

function(zrt_use_options target)
  target_compile_options(${target} PRIVATE
    "$<TARGET_PROPERTY:zrt_options,INTERFACE_COMPILE_OPTIONS>")
  target_compile_definitions(${target} PRIVATE
    "$<TARGET_PROPERTY:zrt_options,INTERFACE_COMPILE_DEFINITIONS>")
  target_link_options(${target} PRIVATE "$<TARGET_PROPERTY:zrt_options,INTERFACE_LINK_OPTIONS>")
endfunction()

# What the compiler emits of the standard library is nobody's interface either; left visible, it would
# keep a shared library loaded after dlclose().
function(zrt_limit_exports target map)
  if(BUILD_SHARED_LIBS)
    target_link_options(${target} PRIVATE "LINKER:--version-script=${map}")
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS "${map}")
  endif()
endfunction()
