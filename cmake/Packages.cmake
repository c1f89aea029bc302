# The Debian packages libvexxml1, libvexxml-dev and vexxml; scripts/package makes them.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_CONTACT "The VexXml developers <vexxml@localhost>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "") # the packages have their own
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
  ${PROJECT_BINARY_DIR} ${PROJECT_BINARY_DIR}/platform)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)

set(debian_version ${PROJECT_VERSION}-${CPACK_DEBIAN_PACKAGE_RELEASE})
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(cmake/debian/changelog.in changelog.Debian @ONLY)
configure_file(CHANGELOG.md changelog COPYONLY)
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/Compress.cmake)

# vexxml_package(component name section title description)
macro(vexxml_package component name section title description)
  list(APPEND CPACK_COMPONENTS_ALL ${component})
  string(TOUPPER ${component} id)
  set(CPACK_DEBIAN_${id}_PACKAGE_NAME ${name})
  set(CPACK_DEBIAN_${id}_PACKAGE_SECTION ${section})
  set(CPACK_DEBIAN_${id}_DESCRIPTION "${title}\n${description}")
  # Only Debian wants them, so they are no part of an ordinary installation.
  set(documents ${CMAKE_INSTALL_DATADIR}/doc/${name})
  install(FILES LICENSE RENAME copyright
    DESTINATION ${documents} COMPONENT ${component} EXCLUDE_FROM_ALL)
  install(FILES ${PROJECT_BINARY_DIR}/changelog ${PROJECT_BINARY_DIR}/changelog.Debian
    DESTINATION ${documents} COMPONENT ${component} EXCLUDE_FROM_ALL)
endmacro()

set(runtime_name libvexxml${PROJECT_VERSION_MAJOR})
set(CPACK_COMPONENTS_ALL)
vexxml_package(VexXml_Runtime ${runtime_name} libs "XML documents as trees"
"Reads XML documents and their DTDs into a tree, which can be searched, edited,
validated, queried with XPath, and written back.")
vexxml_package(VexXml_Development libvexxml-dev libdevel "XML documents as trees, for development"
"What it takes to compile programs that use ${runtime_name}: headers, and files for
CMake and pkg-config.")
vexxml_package(VexXml_Tools vexxml text "formats, validates and queries XML documents"
"A program for the command line, with limits that keep documents of strangers
from taking all memory or time.")

set(CPACK_DEBIAN_VEXXML_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)

include(CPack)
cpack_add_component(VexXml_Runtime)
cpack_add_component(VexXml_Development DEPENDS VexXml_Runtime)
cpack_add_component(VexXml_Tools DEPENDS VexXml_Runtime)
