# runnable(TARGET): sets the variable TARGET to a command that scripts can run: the program, or for
# another processor a script that runs it in an emulator.
function(runnable target)
  set(command $<TARGET_FILE:${target}>)
  if(CMAKE_CROSSCOMPILING)
    string(REPLACE ";" " " emulator "${CMAKE_CROSSCOMPILING_EMULATOR}")
    set(command ${CMAKE_CURRENT_BINARY_DIR}/${target}.emulated)
    file(
      GENERATE
      OUTPUT ${command}
      CONTENT "#!/bin/sh\nexec ${emulator} '$<TARGET_FILE:${target}>' \"$@\"\n"
      FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
  endif()
  set(${target} ${command} PARENT_SCOPE)
endfunction()
