# In our own targets only: headers of other libraries are system headers. Warnings are errors only with CORVANE_WERROR,
# which all presets set: a packager's newer compiler may have more warnings.
function(corvane_warnings target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion -Wold-style-cast -Woverloaded-virtual
    -Wnon-virtual-dtor -Wcast-align -Wformat=2 -Wnull-dereference -Wimplicit-fallthrough)
  if(CORVANE_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(Qt6_VERSION VERSION_GREATER_EQUAL 6.5)
    # Newer libraries deprecate what the oldest supported ones need.
    target_compile_options(${target} PRIVATE -Wno-error=deprecated-declarations)
  endif()
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Reported inside optimised standard-library code that our sources merely call; the second is known to be wrong
    # about std::string in GCC 12 (its bug 105651).
    target_compile_options(${target} PRIVATE -Wno-null-dereference -Wno-restrict)
  endif()
endfunction()
