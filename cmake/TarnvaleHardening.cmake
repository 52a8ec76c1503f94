# A slip in the memory of a program that is in use ends it instead of serving an
# attacker. For the programs' own folders, in release builds: the sanitizers guard
# the others. `security.programs_are_hardened` looks at what came of it.
if(CMAKE_BUILD_TYPE STREQUAL "Release" AND CMAKE_SYSTEM_NAME STREQUAL "Linux")
  add_compile_options(-fPIE -fstack-protector-strong -U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2
                      -D_GLIBCXX_ASSERTIONS)
  add_link_options(-pie -Wl,-z,relro,-z,now,-z,noexecstack)
endif()
