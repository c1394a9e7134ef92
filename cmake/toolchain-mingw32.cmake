# Cross build for 32-bit Windows, the product. Wine here runs 64-bit programs
# only, so this build is checked by linking.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR i686)
set(VELDOR_TRIPLET i686-w64-mingw32)
set(CMAKE_C_COMPILER ${VELDOR_TRIPLET}-gcc-posix)
set(CMAKE_CXX_COMPILER ${VELDOR_TRIPLET}-g++-posix)
set(CMAKE_RC_COMPILER ${VELDOR_TRIPLET}-windres)
set(CMAKE_FIND_ROOT_PATH /usr/${VELDOR_TRIPLET})
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
