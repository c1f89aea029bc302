# What is installed, in three components: VexXml_Runtime, VexXml_Development and VexXml_Tools.
include(CMakePackageConfigHelpers)

set(VEXXML_ZSH_DIR ${CMAKE_INSTALL_DATADIR}/zsh/site-functions CACHE STRING
  "Where zsh looks for completions")
set(cmake_folder ${CMAKE_INSTALL_LIBDIR}/cmake/VexXml)
set(pkgconfig_folder ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# What is installed finds its libraries wherever it is moved to as a whole.
set_property(TARGET VexXml PROPERTY INSTALL_RPATH $ORIGIN)
install(TARGETS VexXml VexXmlPlatform EXPORT VexXmlTargets
  RUNTIME COMPONENT VexXml_Runtime
  LIBRARY COMPONENT VexXml_Runtime NAMELINK_COMPONENT VexXml_Development
  ARCHIVE COMPONENT VexXml_Development
  FILE_SET HEADERS COMPONENT VexXml_Development)

# GDB looks for it by the name of the library.
if(BUILD_SHARED_LIBS)
  install(FILES tools/gdb/VexXml-gdb.py RENAME $<TARGET_FILE_NAME:VexXml>-gdb.py
    DESTINATION ${CMAKE_INSTALL_DATADIR}/gdb/auto-load${CMAKE_INSTALL_FULL_LIBDIR}
    COMPONENT VexXml_Development)
endif()

# For find_package.
install(EXPORT VexXmlTargets NAMESPACE VexXml::
  DESTINATION ${cmake_folder} COMPONENT VexXml_Development)
string(COMPARE EQUAL "${VEXXML_PLATFORM}" "" has_stand_in)
if(TARGET "${VEXXML_PLATFORM}")
  set(platform_target ${VEXXML_PLATFORM})
endif()
configure_package_config_file(cmake/VexXmlConfig.cmake.in VexXmlConfig.cmake
  INSTALL_DESTINATION ${cmake_folder})
write_basic_package_version_file(VexXmlConfigVersion.cmake COMPATIBILITY SameMajorVersion)
install(
  FILES ${PROJECT_BINARY_DIR}/VexXmlConfig.cmake ${PROJECT_BINARY_DIR}/VexXmlConfigVersion.cmake
  DESTINATION ${cmake_folder} COMPONENT VexXml_Development)

# For pkg-config, which cannot tell what a product's own platform needs.
if(has_stand_in)
  file(RELATIVE_PATH prefix_from_pkgconfig
    ${CMAKE_INSTALL_PREFIX}/${pkgconfig_folder} ${CMAKE_INSTALL_PREFIX})
  cmake_path(APPEND pc_includedir "\${prefix}" ${CMAKE_INSTALL_INCLUDEDIR})
  cmake_path(APPEND pc_libdir "\${prefix}" ${CMAKE_INSTALL_LIBDIR})
  if(NOT BUILD_SHARED_LIBS)
    set(pc_definitions " -DVEXXML_STATIC -DVEXSYS_STATIC")
  endif()
  configure_file(cmake/vexxml.pc.in vexxml.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/vexxml.pc
    DESTINATION ${pkgconfig_folder} COMPONENT VexXml_Development)
endif()

if(VEXXML_BUILD_TOOLS)
  file(RELATIVE_PATH libraries_from_program
    ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_property(TARGET vexxml_program PROPERTY INSTALL_RPATH $ORIGIN/${libraries_from_program})
  install(TARGETS vexxml_program COMPONENT VexXml_Tools)
  install(FILES tools/vexxml.1
    DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT VexXml_Tools)
  install(FILES tools/completions/vexxml.bash RENAME vexxml
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT VexXml_Tools)
  install(FILES tools/completions/_vexxml
    DESTINATION ${VEXXML_ZSH_DIR} COMPONENT VexXml_Tools)
endif()
