# The release of the Windows program: the operator's manual VELDOR_v2.pdf,
# built from docs/manual with pandoc and WeasyPrint, and the ZIP package that
# CPack makes of the program's folder (`cpack` in the build folder):
# veldor-<version>-win32.zip from the i686 build, -win64 from the x86_64 one.

# ---- The operator's manual -----------------------------------------------------------
set(VELDOR_MANUAL_DIR ${CMAKE_SOURCE_DIR}/docs/manual)
set(VELDOR_MANUAL ${CMAKE_BINARY_DIR}/VELDOR_v2.pdf)
set(VELDOR_MANUAL_CHAPTERS
  01-introduction.md 02-quick-start.md 03-windows.md 04-menus.md 05-dialogs.md
  06-calibration.md 07-filter-and-tags.md 08-printing.md 09-files.md 10-export.md
  11-troubleshooting.md)
list(TRANSFORM VELDOR_MANUAL_CHAPTERS PREPEND ${VELDOR_MANUAL_DIR}/)
file(GLOB VELDOR_MANUAL_IMAGES CONFIGURE_DEPENDS ${VELDOR_MANUAL_DIR}/images/*.png)
find_program(VELDOR_PANDOC pandoc)
find_program(VELDOR_WEASYPRINT weasyprint)
if(VELDOR_PANDOC AND VELDOR_WEASYPRINT)
  add_custom_command(
    OUTPUT ${VELDOR_MANUAL}
    COMMAND ${VELDOR_PANDOC} --from markdown-smart --to html5 --standalone --toc --toc-depth=2
      --template ${VELDOR_MANUAL_DIR}/manual.html --metadata version=${PROJECT_VERSION}
      --output ${CMAKE_BINARY_DIR}/VELDOR_v2.html ${VELDOR_MANUAL_CHAPTERS}
    COMMAND ${VELDOR_WEASYPRINT} --quiet --base-url ${VELDOR_MANUAL_DIR}/
      --stylesheet ${VELDOR_MANUAL_DIR}/manual.css ${CMAKE_BINARY_DIR}/VELDOR_v2.html ${VELDOR_MANUAL}
    DEPENDS ${VELDOR_MANUAL_CHAPTERS} ${VELDOR_MANUAL_IMAGES}
      ${VELDOR_MANUAL_DIR}/manual.html ${VELDOR_MANUAL_DIR}/manual.css
    COMMENT "Building the operator's manual VELDOR_v2.pdf"
    VERBATIM)
  add_custom_target(veldor_manual ALL DEPENDS ${VELDOR_MANUAL})
else()
  message(WARNING "pandoc or weasyprint not found: no VELDOR_v2.pdf, and the package lacks the manual "
    "(scripts/install-deps.sh installs them)")
endif()

# ---- The package ------------------------------------------------------------------------
# Everything lies flat in one folder, as the program expects: Default.cal and
# Colours.txt beside veldor.exe, the manual and the licence for the Help menu.
install(TARGETS veldor RUNTIME DESTINATION .)
install(FILES ${CMAKE_SOURCE_DIR}/tests/data/cal/default_curve.cal DESTINATION . RENAME Default.cal)
install(FILES ${CMAKE_SOURCE_DIR}/docs/package/Colours.txt ${CMAKE_SOURCE_DIR}/docs/package/EULA.rtf
  ${CMAKE_SOURCE_DIR}/docs/package/README.txt DESTINATION .)
if(TARGET veldor_manual)
  install(FILES ${VELDOR_MANUAL} DESTINATION .)
endif()
# veldor-export is added to the build after this file is read: look for it
# once the whole project has been read.
function(veldor_package_export_tool)
  if(TARGET veldor_export)
    install(TARGETS veldor_export RUNTIME DESTINATION .)
  endif()
endfunction()
cmake_language(DEFER DIRECTORY ${CMAKE_SOURCE_DIR} CALL veldor_package_export_tool)

if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  set(VELDOR_PACKAGE_SYSTEM win32)
else()
  set(VELDOR_PACKAGE_SYSTEM win64)
endif()
set(CPACK_GENERATOR ZIP)
set(CPACK_PACKAGE_NAME veldor)
set(CPACK_PACKAGE_VENDOR "Trevan Instruments")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_FILE_NAME veldor-${PROJECT_VERSION}-${VELDOR_PACKAGE_SYSTEM})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "VELDOR RF Survey Software")
set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_SOURCE_DIR}/docs/package/EULA.rtf)
set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY ON)
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR})
include(CPack)
