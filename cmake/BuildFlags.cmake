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

# siputility_library_flags: these and the flags of the libraries. Under sanitizers only the program
# has their runtime, so undefined symbols cannot be errors. What links a static library gets the link
# options here.
add_library(siputility_library_flags INTERFACE)
target_link_libraries(siputility_library_flags INTERFACE siputility_build_flags)
# A library calls its own functions directly, not through the dynamic linker, and may inline them.
# It calls those of other libraries through their addresses, without a stub.
target_compile_options(siputility_library_flags INTERFACE -fno-exceptions -fno-plt
                                                          -fno-semantic-interposition)
if(library_type STREQUAL "SHARED")
  target_link_options(siputility_library_flags INTERFACE LINKER:-Bsymbolic-functions)
  if(NOT SIPUTILITY_SANITIZE)
    target_link_options(siputility_library_flags INTERFACE LINKER:--no-undefined)
  endif()
endif()
if(SIPUTILITY_SANITIZE AND CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  # Unsigned sums never wrap in our own code. In headers of the standard library they may.
  target_compile_options(siputility_library_flags INTERFACE
                         -fsanitize=unsigned-integer-overflow)
endif()

# A profile of ./dev profile: g++ arranges the code for what usually runs. It counts no values: for
# the sizes of copies that are usual it would write loops, which are slow for long ones. A release of
# g++ reads only its own counts. A function that never ran, or has changed since, is compiled as
# without a profile.
set(counts counts-${CMAKE_CXX_COMPILER_ID}-${CMAKE_CXX_COMPILER_VERSION})
get_filename_component(profile "${SIPUTILITY_PROFILE}/${counts}" ABSOLUTE BASE_DIR
                       ${PROJECT_SOURCE_DIR})
file(REAL_PATH ${PROJECT_BINARY_DIR} build)
if(SIPUTILITY_PROFILE STREQUAL "generate")
  if(NOT CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    message(FATAL_ERROR "SIPUTILITY_PROFILE=generate needs g++")
  endif()
  target_compile_options(
    siputility_library_flags
    INTERFACE -fprofile-generate=${build}/${counts}
              -fprofile-prefix-path=${build} -fno-profile-values)
  target_link_options(siputility_library_flags INTERFACE -fprofile-generate)
elseif(SIPUTILITY_PROFILE AND EXISTS ${profile})
  target_compile_options(
    siputility_library_flags
    INTERFACE -fprofile-use=${profile}
              -fprofile-prefix-path=${build}
              -fno-profile-values
              -fprofile-partial-training
              -Wno-missing-profile
              -Wno-coverage-mismatch)
  # An array that would be too long asks for all memory, and so fails.
  target_link_options(siputility_library_flags INTERFACE -Wno-alloc-size-larger-than)
  set(profile_note ", with a profile")  # for the benchmarks
  # A new profile compiles the sources again.
  set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${profile})
  file(TIMESTAMP ${profile} SIPUTILITY_PROFILE_TIME)
  target_compile_definitions(siputility_library_flags
                             INTERFACE SIPUTILITY_PROFILE_TIME="${SIPUTILITY_PROFILE_TIME}")
endif()
