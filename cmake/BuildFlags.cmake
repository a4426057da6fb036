# siputility_build_flags: the flags of this project's own targets, linked PRIVATE.
add_library(siputility_build_flags INTERFACE)
target_compile_options(
  siputility_build_flags
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            -Wconversion
            -Wsign-conversion
            -Wshadow
            -Wold-style-cast
            -Wnon-virtual-dtor
            -Wcast-qual)
if(SIPUTILITY_WERROR)
  target_compile_options(siputility_build_flags INTERFACE -Werror)
endif()
if(SIPUTILITY_SANITIZE)
  target_compile_options(
    siputility_build_flags INTERFACE -fsanitize=${SIPUTILITY_SANITIZE} -fno-sanitize-recover=all
                                     -fno-omit-frame-pointer)
  target_link_options(siputility_build_flags INTERFACE -fsanitize=${SIPUTILITY_SANITIZE})
endif()
if(SIPUTILITY_COVERAGE)
  target_compile_options(siputility_build_flags INTERFACE --coverage)
  target_link_options(siputility_build_flags INTERFACE --coverage)
endif()
if(SIPUTILITY_LIBFUZZER)
  target_compile_options(siputility_build_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

# siputility_library_flags: these and the flags of the shared libraries. Under sanitizers only the
# program has their runtime, so undefined symbols cannot be errors.
add_library(siputility_library_flags INTERFACE)
target_link_libraries(siputility_library_flags INTERFACE siputility_build_flags)
# A library calls its own functions directly, not through the dynamic linker, and may inline them.
# It calls those of other libraries through their addresses, without a stub.
target_compile_options(siputility_library_flags INTERFACE -fno-exceptions -fno-plt
                                                          -fno-semantic-interposition)
target_link_options(siputility_library_flags INTERFACE LINKER:-Bsymbolic-functions)
if(NOT SIPUTILITY_SANITIZE)
  target_link_options(siputility_library_flags INTERFACE LINKER:--no-undefined)
elseif(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  # Unsigned sums never wrap in our own code. In headers of the standard library they may.
  target_compile_options(siputility_library_flags INTERFACE
                         -fsanitize=unsigned-integer-overflow)
endif()
