# cross.cmake - toolchain for SIPUTILITY_CROSS (arm64, armhf, s390x, i386): Debian's cross compiler,
# and qemu-user to run what it makes. i386 programs run without it: qemu-i386 hangs if a program
# with threads forks. SIPUTILITY_SYSROOT has the libraries of that processor.
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES SIPUTILITY_CROSS SIPUTILITY_SYSROOT)
set(triplet_arm64 aarch64-linux-gnu)
set(triplet_armhf arm-linux-gnueabihf)
set(triplet_s390x s390x-linux-gnu)
set(triplet_i386 i686-linux-gnu)
set(processor_arm64 aarch64)
set(processor_armhf arm)
set(processor_s390x s390x)
set(processor_i386 i686)
set(triplet ${triplet_${SIPUTILITY_CROSS}})
set(processor ${processor_${SIPUTILITY_CROSS}})

set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR ${processor})
set(CMAKE_CXX_COMPILER ${triplet}-g++)
set(CMAKE_C_COMPILER ${triplet}-gcc)

# folder is Debian's multiarch folder of the libraries. Only for i386 it has another name.
if(SIPUTILITY_CROSS STREQUAL "i386")
  set(folder i386-linux-gnu)
  set(libraries /usr/${triplet}/lib)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${libraries}/ld-linux.so.2;--library-path;${libraries})
else()
  set(folder ${triplet})
  set(CMAKE_CROSSCOMPILING_EMULATOR qemu-${processor};-L;/usr/${triplet})
endif()
set(ZLIB_INCLUDE_DIR ${SIPUTILITY_SYSROOT}/usr/include CACHE PATH "")
set(ZLIB_LIBRARY ${SIPUTILITY_SYSROOT}/usr/lib/${folder}/libz.a CACHE FILEPATH "")
set(PCAP_INCLUDE_DIR ${SIPUTILITY_SYSROOT}/usr/include CACHE PATH "")
# withoutDbus.ld replaces the library that libpcap calls only to capture from D-Bus.
set(PCAP_LIBRARY ${SIPUTILITY_SYSROOT}/usr/lib/${folder}/libpcap.a ${SIPUTILITY_SYSROOT}/withoutDbus.ld
    CACHE STRING "")
