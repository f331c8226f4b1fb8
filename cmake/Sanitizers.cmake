# Every finding aborts the program, so that no test can ignore one.
if(CORVANE_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(CORVANE_SANITIZE_THREADS)
  if(CORVANE_SANITIZE)
    message(FATAL_ERROR "ThreadSanitizer and AddressSanitizer exclude each other: choose one build for each.")
  endif()
  add_compile_options(-fsanitize=thread -fno-omit-frame-pointer)
  add_link_options(-fsanitize=thread)
endif()
if(CORVANE_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
  find_program(CORVANE_GCOVR gcovr DOC "Reads what gcc counted")
  if(CORVANE_GCOVR)
    # To be built after the tests have run: their coverage of the core and the application, and the lines not reached.
    add_custom_target(coverage
      COMMAND ${CORVANE_GCOVR} --root ${PROJECT_SOURCE_DIR} --filter ${PROJECT_SOURCE_DIR}/CorvaneCore/
        --filter ${PROJECT_SOURCE_DIR}/CorvaneApp/ --exclude-unreachable-branches --exclude-throw-branches
        --html-details ${PROJECT_BINARY_DIR}/coverage.html --txt ${PROJECT_BINARY_DIR}/coverage.txt --print-summary
        ${PROJECT_BINARY_DIR}
      VERBATIM)
  endif()
endif()
if(CORVANE_LIBFUZZER)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
