# Every finding ends the program, so that no test can pass over one.
if(CORVANE_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(CORVANE_LIBFUZZER)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
