# The Debian packages that cpack makes of the install components: lib-siputilityN,
# lib-siputility-dev and siputil. ./dev package sets what differs between a Debian system and a
# private folder: the prefix /usr, flags, the place of completions.
set(runtime_package lib-siputility${PROJECT_VERSION_MAJOR})
set(dev_package lib-siputility-dev)
set(tool_package siputil)
set(release 1)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR lib-siputility)
set(CPACK_PACKAGE_CONTACT "lib-siputility maintainers <maintainers@lib-siputility.example.org>"
    CACHE STRING "Who the packages name as their maintainer")
set(CPACK_STRIP_FILES ON)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ
    GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${release})
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/platform
                                                ${PROJECT_BINARY_DIR}/sip_utility)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)

set(CPACK_COMPONENTS_ALL runtime dev)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${runtime_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION
    "Reads, checks, edits and writes SIP addresses, tel URIs, header fields and
multipart bodies (RFC 3261, RFC 3966), over a platform layer for desktops.")
# By hand: cpack also requires versions of the host platform's libraries, and has no triggers.
set(debian ${PROJECT_BINARY_DIR}/debian)
file(
  WRITE ${debian}/shlibs
  "lib-siputility ${PROJECT_VERSION_MAJOR} ${runtime_package} (>= ${PROJECT_VERSION})\n")
file(WRITE ${debian}/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${debian}/shlibs ${debian}/triggers)
set(CPACK_DEBIAN_DEV_PACKAGE_NAME ${dev_package})
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS zlib1g-dev)  # included by imsvarnZlib.h
set(CPACK_COMPONENT_DEV_DEPENDS runtime)
set(CPACK_DEBIAN_DEV_DESCRIPTION
    "Headers, CMake package and pkg-config files to build with lib-siputility.")
if(TARGET siputil)
  list(APPEND CPACK_COMPONENTS_ALL tool)
  set(CPACK_DEBIAN_TOOL_PACKAGE_NAME ${tool_package})
  set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION utils)
  set(CPACK_COMPONENT_TOOL_DEPENDS runtime)
  set(CPACK_DEBIAN_TOOL_DESCRIPTION
      "Reads SIP addresses, tel URIs, header fields and complete messages, shows
what is wrong with them, edits them and writes them back, also as JSON.")
endif()

# What Debian requires of a manual page and in each package's doc folder. A plain install has
# neither.
if(TARGET siputil)
  set(manual \$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_MANDIR}/man1/siputil.1)
  install(CODE "execute_process(COMMAND gzip -9nf \"${manual}\" COMMAND_ERROR_IS_FATAL ANY)"
          COMPONENT tool EXCLUDE_FROM_ALL)
endif()
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)  # SOURCE_DATE_EPOCH, if it is set
file(
  WRITE ${debian}/changelog.Debian
  "siputility (${PROJECT_VERSION}-${release}) unstable; urgency=medium\n\n"
  "  * See changelog.gz for the changes.\n\n" " -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
configure_file(${PROJECT_SOURCE_DIR}/CHANGELOG.md ${debian}/changelog COPYONLY)
foreach(name IN ITEMS changelog changelog.Debian)
  execute_process(COMMAND gzip -9nkf ${debian}/${name} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  set(doc ${CMAKE_INSTALL_DATADIR}/doc/${${component}_package})
  install(FILES ${debian}/changelog.gz ${debian}/changelog.Debian.gz DESTINATION ${doc}
          COMPONENT ${component} EXCLUDE_FROM_ALL)
  install(FILES ${PROJECT_SOURCE_DIR}/COPYRIGHT DESTINATION ${doc} RENAME copyright
          COMPONENT ${component} EXCLUDE_FROM_ALL)
endforeach()
include(CPack)
