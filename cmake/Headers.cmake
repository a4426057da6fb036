# link_headers(FILE...): makes headers includable as <siputility/NAME> and "NAME" in the build tree, as
# they are once installed, with a link to each in siputility_include.
set(siputility_include ${PROJECT_BINARY_DIR}/include)
function(link_headers)
  file(MAKE_DIRECTORY ${siputility_include}/siputility)
  foreach(header IN LISTS ARGN)
    cmake_path(GET header FILENAME name)
    file(CREATE_LINK ${header} ${siputility_include}/siputility/${name} SYMBOLIC)
  endforeach()
endfunction()
