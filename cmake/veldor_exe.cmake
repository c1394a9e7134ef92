# The Windows program, veldor.exe: the front end (*_win32.cpp), the resource
# script with its generated icons and bitmaps, and the portable core.
find_package(Python3 REQUIRED COMPONENTS Interpreter)

set(VELDOR_IMAGE_DIR ${CMAKE_BINARY_DIR}/images)
set(VELDOR_IMAGES
  ${VELDOR_IMAGE_DIR}/veldor_frame.ico
  ${VELDOR_IMAGE_DIR}/veldor_listing.ico
  ${VELDOR_IMAGE_DIR}/veldor_plot.ico
  ${VELDOR_IMAGE_DIR}/veldor_chart.ico
  ${VELDOR_IMAGE_DIR}/veldor_tags.ico
  ${VELDOR_IMAGE_DIR}/signon.bmp
  ${VELDOR_IMAGE_DIR}/setup_side.bmp
  ${VELDOR_IMAGE_DIR}/setup_header.bmp)
# The button faces of the Plot window: resource ids 1067-1070 and 26568-26592.
foreach(face_id RANGE 1067 1070)
  list(APPEND VELDOR_IMAGES ${VELDOR_IMAGE_DIR}/face_${face_id}.bmp)
endforeach()
foreach(face_id RANGE 26568 26592)
  list(APPEND VELDOR_IMAGES ${VELDOR_IMAGE_DIR}/face_${face_id}.bmp)
endforeach()
add_custom_command(
  OUTPUT ${VELDOR_IMAGES}
  COMMAND Python3::Interpreter ${CMAKE_SOURCE_DIR}/src/resources/make_images.py ${VELDOR_IMAGE_DIR}
  DEPENDS ${CMAKE_SOURCE_DIR}/src/resources/make_images.py
  COMMENT "Drawing the icons, the sign-on bitmap, the button faces and the setup's pictures"
  VERBATIM)
add_custom_target(veldor_images DEPENDS ${VELDOR_IMAGES})

file(GLOB VELDOR_WIN32_SOURCES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/*/*_win32.cpp)
set(VELDOR_RC ${CMAKE_SOURCE_DIR}/src/resources/veldor.rc)
# The dialog templates are scripts of their own that veldor.rc includes.
file(GLOB VELDOR_RC_PARTS CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/src/resources/dialogs_*.rc)
list(APPEND VELDOR_RC_PARTS ${CMAKE_SOURCE_DIR}/src/resources/version.rc ${VELDOR_GENERATED_DIR}/veldor_version.h)
set_source_files_properties(${VELDOR_RC} PROPERTIES OBJECT_DEPENDS "${VELDOR_IMAGES};${VELDOR_RC_PARTS}"
  INCLUDE_DIRECTORIES ${VELDOR_GENERATED_DIR})

add_executable(veldor WIN32 ${VELDOR_WIN32_SOURCES} ${VELDOR_RC})
add_dependencies(veldor veldor_images)
target_include_directories(veldor PRIVATE ${CMAKE_SOURCE_DIR}/src ${CMAKE_SOURCE_DIR}/src/resources
  ${VELDOR_IMAGE_DIR})
target_compile_definitions(veldor PRIVATE WIN32_LEAN_AND_MEAN)
target_link_libraries(veldor PRIVATE veldor_core comctl32 comdlg32 gdi32 shell32 user32 kernel32)

# The release: the operator's manual and the package.
include(${CMAKE_SOURCE_DIR}/cmake/veldor_package.cmake)
