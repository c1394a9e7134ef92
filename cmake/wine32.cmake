# The i686 build's programs run under the 32-bit Wine of the i386 root
# (scripts/i386-root.sh makes it). This writes wine, wineserver and winepath
# into <build>/wine32: each runs the root's own program through
# scripts/wine32.sh, lending it the source and build folders. CTest runs the
# test programs with that wine; the test scripts put the folder first on PATH.
set(VELDOR_WINE32_DIR ${CMAKE_BINARY_DIR}/wine32)
foreach(program wine wineserver winepath)
  file(CONFIGURE OUTPUT ${VELDOR_WINE32_DIR}/${program} @ONLY CONTENT [[
#!/bin/sh
export VELDOR_WINE32_BINDS="${VELDOR_WINE32_BINDS:+$VELDOR_WINE32_BINDS:}@CMAKE_SOURCE_DIR@:@CMAKE_BINARY_DIR@"
exec /bin/bash "@CMAKE_SOURCE_DIR@/scripts/wine32.sh" @program@ "$@"
]])
  file(CHMOD ${VELDOR_WINE32_DIR}/${program} PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
    GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
endforeach()
set(CMAKE_CROSSCOMPILING_EMULATOR ${VELDOR_WINE32_DIR}/wine)
