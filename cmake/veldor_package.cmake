# The release of the Windows program: the operator's manual VELDOR_v2.pdf,
# built from docs/manual with pandoc and WeasyPrint, and what CPack makes of
# the program's folder (`cpack` in the build folder): the ZIP package
# veldor-<version>-win32.zip from the i686 build (-win64 from the x86_64 one)
# and, from the i686 build, the setup program veldor-<version>-setup.exe.

# ---- The operator's manual -----------------------------------------------------------
set(VELDOR_MANUAL_DIR ${CMAKE_SOURCE_DIR}/docs/manual)
set(VELDOR_MANUAL ${CMAKE_BINARY_DIR}/VELDOR_v2.pdf)
set(VELDOR_MANUAL_CHAPTERS
  01-introduction.md 02-quick-start.md 03-windows.md 04-menus.md 05-dialogs.md
  06-calibration.md 07-filter-and-tags.md 08-printing.md 09-files.md 10-export.md
  10-coverage-report.md
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
# The packaged programs are stripped when they are linked, not by cpack: cpack
# strips once per generator and stamps each copy with the time of the strip,
# so the zip and the setup program could hold different bytes of one build.
target_link_options(veldor PRIVATE -s)
install(TARGETS veldor RUNTIME DESTINATION .)
install(FILES ${CMAKE_SOURCE_DIR}/tests/data/cal/default_curve.cal DESTINATION . RENAME Default.cal)
# Sample.DAT is a survey to open on the first start, recorded by
# scripts/make-sample-survey.sh.
install(FILES ${CMAKE_SOURCE_DIR}/docs/package/Colours.txt ${CMAKE_SOURCE_DIR}/docs/package/EULA.rtf
  ${CMAKE_SOURCE_DIR}/docs/package/README.txt ${CMAKE_SOURCE_DIR}/docs/package/Sample.DAT DESTINATION .)
if(TARGET veldor_manual)
  install(FILES ${VELDOR_MANUAL} DESTINATION .)
endif()
# veldor-export is added to the build after this file is read: look for it
# once the whole project has been read.
function(veldor_package_export_tool)
  if(TARGET veldor_export)
    target_link_options(veldor_export PRIVATE -s)
    install(TARGETS veldor_export RUNTIME DESTINATION .)
  endif()
endfunction()
cmake_language(DEFER DIRECTORY ${CMAKE_SOURCE_DIR} CALL veldor_package_export_tool)

set(CPACK_GENERATOR ZIP)
if(CMAKE_SIZEOF_VOID_P EQUAL 4)
  set(VELDOR_PACKAGE_SYSTEM win32)
  find_program(VELDOR_MAKENSIS makensis)
  if(VELDOR_MAKENSIS)
    list(APPEND CPACK_GENERATOR NSIS)
  else()
    message(WARNING "makensis not found: no setup program (scripts/install-deps.sh installs nsis)")
  endif()
else()
  set(VELDOR_PACKAGE_SYSTEM win64)
endif()
set(CPACK_PACKAGE_NAME veldor)
set(CPACK_PACKAGE_VENDOR "Trevan Instruments")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_FILE_NAME veldor-${PROJECT_VERSION}-${VELDOR_PACKAGE_SYSTEM})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "VELDOR RF Survey Software")
set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_SOURCE_DIR}/docs/package/EULA.rtf)
set(CPACK_INCLUDE_TOPLEVEL_DIRECTORY ON)
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR})

# The setup program: welcome, the licence, the folder (Program Files\VELDOR),
# the Start-menu folder; then the files, a Start-menu folder with VELDOR,
# the manual, the licence and the uninstaller, and the entry of Add/Remove
# Programs. Uninstalling removes what was installed and nothing else: the
# settings in the common application data folder and the operator's
# surveys stay. A VELDOR already installed is uninstalled first.
set(CPACK_PACKAGE_INSTALL_DIRECTORY VELDOR)
set(CPACK_PACKAGE_INSTALL_REGISTRY_KEY VELDOR)
set(CPACK_NSIS_PACKAGE_NAME VELDOR)
set(CPACK_NSIS_DISPLAY_NAME "VELDOR ${PROJECT_VERSION}")
set(CPACK_PACKAGE_EXECUTABLES veldor VELDOR)
set(CPACK_NSIS_EXECUTABLES_DIRECTORY .)
set(CPACK_NSIS_INSTALLED_ICON_NAME veldor.exe)
set(CPACK_NSIS_MUI_ICON ${VELDOR_IMAGE_DIR}/veldor_frame.ico)
set(CPACK_NSIS_MUI_UNIICON ${VELDOR_IMAGE_DIR}/veldor_frame.ico)
set(CPACK_NSIS_MUI_WELCOMEFINISHPAGE_BITMAP ${VELDOR_IMAGE_DIR}/setup_side.bmp)
set(CPACK_NSIS_MUI_UNWELCOMEFINISHPAGE_BITMAP ${VELDOR_IMAGE_DIR}/setup_side.bmp)
set(CPACK_NSIS_MUI_HEADERIMAGE ${VELDOR_IMAGE_DIR}/setup_header.bmp)
set(CPACK_NSIS_MENU_LINKS)
if(TARGET veldor_manual)
  list(APPEND CPACK_NSIS_MENU_LINKS VELDOR_v2.pdf "Operator's Manual")
endif()
list(APPEND CPACK_NSIS_MENU_LINKS EULA.rtf Licence)
set(CPACK_NSIS_MUI_FINISHPAGE_RUN veldor.exe)
set(CPACK_NSIS_ENABLE_UNINSTALL_BEFORE_INSTALL ON)
# The setup's own file name and its flat folder, read by cpack per generator.
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_SOURCE_DIR}/cmake/veldor_cpack_generator.cmake)
include(CPack)
