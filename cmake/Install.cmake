# What `cmake --install` installs, in the components runtime, dev and tool. All paths between the
# files are relative, so the tree may be anywhere.
#
#   bin/siputil
#   include/siputility/          the library's headers and those of the platform's contract
#   lib/lib-siputility.so.N
#   lib/lib-siputility-message.a
#   lib/siputility/lib-ims*.so   the host platform: no version, since a handset has these names
#   lib/cmake/siputility/, lib/pkgconfig/
#   share/                       manual page, completions, schema of the JSON
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(headers ${CMAKE_INSTALL_INCLUDEDIR}/siputility)
set(platform_libraries ${CMAKE_INSTALL_LIBDIR}/siputility)
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/siputility)

# Headers are found as <siputility/wySipAddress.h> and as "wySipAddress.h".
install(
  TARGETS siputility siputility_message siputility_platform
  EXPORT siputility
  ARCHIVE COMPONENT dev
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT dev
  FILE_SET HEADERS DESTINATION ${headers} COMPONENT dev
  INCLUDES
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} ${headers})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/platform/inc/ DESTINATION ${headers} COMPONENT dev)

# platform_flags: how siputility.pc links the platform.
if(SIPUTILITY_PLATFORM STREQUAL "host")
  install(
    TARGETS imsdpl imsvarn imsxml
    EXPORT siputility
    ARCHIVE DESTINATION ${platform_libraries} COMPONENT dev
    LIBRARY DESTINATION ${platform_libraries} COMPONENT runtime
    INCLUDES
    DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} ${headers})
  install(FILES ${PROJECT_SOURCE_DIR}/platform/host/hostControl.h DESTINATION ${headers}
          COMPONENT dev)
  set(platform_flags " -L\${libdir}/siputility -l-imsxml -l-imsvarn -l-imsdpl")
  if(library_type STREQUAL "SHARED")
    set_target_properties(siputility PROPERTIES INSTALL_RPATH $ORIGIN/siputility)
    set_target_properties(imsvarn PROPERTIES INSTALL_RPATH $ORIGIN)
    # The loader does not search the folder by itself.
    target_link_options(
      siputility_platform INTERFACE
      $<INSTALL_INTERFACE:LINKER:-rpath,$<INSTALL_PREFIX>/${platform_libraries}>)
    string(APPEND platform_flags " -Wl,-rpath,\${libdir}/siputility")
  else()
    string(APPEND platform_flags " -lz")
  endif()
else()
  include(${CMAKE_CURRENT_LIST_DIR}/ExternalPlatform.cmake)
endif()
if(library_type STREQUAL "STATIC")
  # A program in C links the run-time of C++ as well.
  set(run_time ${CMAKE_CXX_IMPLICIT_LINK_LIBRARIES})
  list(FILTER run_time INCLUDE REGEX "^(std)?c\\+\\+")
  list(TRANSFORM run_time PREPEND " -l")
  string(APPEND platform_flags ${run_time})
endif()

install(EXPORT siputility FILE siputilityTargets.cmake NAMESPACE siputility::
        DESTINATION ${package} COMPONENT dev)
set(version_file ${CMAKE_CURRENT_BINARY_DIR}/siputilityConfigVersion.cmake)
write_basic_package_version_file(${version_file} COMPATIBILITY SameMinorVersion)
install(FILES ${version_file} DESTINATION ${package} COMPONENT dev)

# install_filled(NAME DESTINATION): installs cmake/NAME.in, filled with variables and generator
# expressions.
function(install_filled name destination)
  set(filled ${CMAKE_CURRENT_BINARY_DIR}/${name})
  configure_file(${PROJECT_SOURCE_DIR}/cmake/${name}.in ${filled}.in @ONLY)
  file(GENERATE OUTPUT ${filled} INPUT ${filled}.in)
  install(FILES ${filled} DESTINATION ${destination} COMPONENT dev)
endfunction()
install_filled(siputilityConfig.cmake ${package})
file(RELATIVE_PATH prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" prefix ${prefix})
install_filled(siputility.pc ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
install_filled(siputility-message.pc ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

if(TARGET siputil)
  file(RELATIVE_PATH libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(
    siputil PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries};$ORIGIN/${libraries}/siputility")
  install(TARGETS siputil COMPONENT tool)
  set(share ${PROJECT_SOURCE_DIR}/tool/share)
  install(FILES ${share}/siputil.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
  install(FILES ${share}/siputil.bash RENAME siputil COMPONENT tool
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  install(FILES ${PROJECT_SOURCE_DIR}/docs/siputil.schema.json COMPONENT tool
          DESTINATION ${CMAKE_INSTALL_DATADIR}/siputility)
  set(SIPUTILITY_ZSH_COMPLETIONS ${CMAKE_INSTALL_DATADIR}/zsh/site-functions
      CACHE STRING "Where the completions for zsh are installed")
  install(FILES ${share}/_siputil DESTINATION ${SIPUTILITY_ZSH_COMPLETIONS} COMPONENT tool)
endif()
