# Builds for the device (ARMv7, hard-float, Debian's armhf) with Debian's cross compiler and the
# armhf libraries installed next to the build machine's own. What is built runs here under qemu.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)

# The C and C++ libraries of the cross compiler get no security updates; those of the armhf
# architecture do. They are taken from where tools/fetch unpacks them, or from the system.
foreach(root ${CMAKE_CURRENT_LIST_DIR}/../build/armhf-libraries "")
  if(EXISTS ${root}/usr/lib/arm-linux-gnueabihf/libc.a)
    file(GLOB libraries ${root}/usr/lib/gcc/arm-linux-gnueabihf/*)
    set(CMAKE_EXE_LINKER_FLAGS_INIT "-B'${root}/usr/lib/arm-linux-gnueabihf' -B'${libraries}'")
    break()
  endif()
endforeach()

find_program(QEMU_ARM NAMES qemu-arm qemu-arm-static) # needed by the tests, not by the build
if(QEMU_ARM)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${QEMU_ARM})
endif()

# As on Debian, where several architectures may be installed side by side.
set(CMAKE_INSTALL_LIBDIR lib/arm-linux-gnueabihf CACHE PATH "Folder of object code libraries")
set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE armhf)
