# What `cmake --install` installs, in the components runtime, dev and tool. All paths between the
# files are relative, so the tree may be anywhere.
#
#   bin/siputil
#   include/siputility/          the library's headers and those of the platform's contract
#   lib/lib-siputility.so.N
#   lib/siputility/lib-ims*.so   the host platform: no version, since they are not public
#   lib/cmake/siputility/, lib/pkgconfig/
#   share/                       manual page, completions, schema of the JSON
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(headers ${CMAKE_INSTALL_INCLUDEDIR}/siputility)
set(platform_libraries ${CMAKE_INSTALL_LIBDIR}/siputility)
set(package ${CMAKE_INSTALL_LIBDIR}/cmake/siputility)

# Headers are found as <siputility/wySipAddress.h> and as "wySipAddress.h".
install(
  TARGETS siputility siputility_message
  EXPORT siputility
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT dev
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev
  FILE_SET HEADERS DESTINATION ${headers} COMPONENT dev
  INCLUDES
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/platform/inc/ DESTINATION ${headers} COMPONENT dev)

set(pkg_config_files siputility)
if(SIPUTILITY_PLATFORM STREQUAL "host")
  list(APPEND pkg_config_files siputility-host)
  install(
    TARGETS imsdpl imsvarn imsxml
    EXPORT siputility
    LIBRARY DESTINATION ${platform_libraries} COMPONENT runtime
    INCLUDES
    DESTINATION ${headers})
  install(FILES ${PROJECT_SOURCE_DIR}/platform/host/hostControl.h DESTINATION ${headers}
          COMPONENT dev)
  set_target_properties(siputility PROPERTIES INSTALL_RPATH $ORIGIN/siputility)
  set_target_properties(imsvarn PROPERTIES INSTALL_RPATH $ORIGIN)
endif()

install(EXPORT siputility FILE siputilityConfig.cmake NAMESPACE siputility:: DESTINATION ${package}
        COMPONENT dev)
set(version_file ${CMAKE_CURRENT_BINARY_DIR}/siputilityConfigVersion.cmake)
write_basic_package_version_file(${version_file} COMPATIBILITY SameMinorVersion)
install(FILES ${version_file} DESTINATION ${package} COMPONENT dev)

file(RELATIVE_PATH prefix ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" prefix ${prefix})
foreach(name IN LISTS pkg_config_files)
  configure_file(${CMAKE_CURRENT_LIST_DIR}/${name}.pc.in ${name}.pc @ONLY)
  install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc
          DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT dev)
endforeach()

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
