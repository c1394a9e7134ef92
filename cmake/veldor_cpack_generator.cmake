# Read by cpack for each generator: the setup program is
# veldor-<version>-setup.exe, with the files straight in the install folder.
if(CPACK_GENERATOR STREQUAL "NSIS")
  set(CPACK_PACKAGE_FILE_NAME veldor-${CPACK_PACKAGE_VERSION}-setup)
  set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY OFF)
endif()
