# Installation: header, both libraries, data files, pkg-config file and CMake package. Every path
# in the installed files is relative to where they are, so an installed prefix can be moved whole.
install(TARGETS typeprint typeprint_static EXPORT typeprintTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  PUBLIC_HEADER DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(FILES ${TYPEPRINT_DATA_FILES} DESTINATION ${CMAKE_INSTALL_DATADIR}/typeprint)

set(TYPEPRINT_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/typeprint)
install(EXPORT typeprintTargets NAMESPACE typeprint:: DESTINATION ${TYPEPRINT_CMAKE_DIR})
include(CMakePackageConfigHelpers)
configure_package_config_file(cmake/typeprintConfig.cmake.in
  ${PROJECT_BINARY_DIR}/typeprintConfig.cmake
  INSTALL_DESTINATION ${TYPEPRINT_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/typeprintConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/typeprintConfig.cmake
  ${PROJECT_BINARY_DIR}/typeprintConfigVersion.cmake
  DESTINATION ${TYPEPRINT_CMAKE_DIR})

file(RELATIVE_PATH TYPEPRINT_PREFIX_FROM_PCFILEDIR ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" TYPEPRINT_PREFIX_FROM_PCFILEDIR "${TYPEPRINT_PREFIX_FROM_PCFILEDIR}")
file(RELATIVE_PATH TYPEPRINT_REL_INCLUDEDIR ${CMAKE_INSTALL_PREFIX} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
list(TRANSFORM TYPEPRINT_RUNTIME_LIBRARIES PREPEND -l OUTPUT_VARIABLE TYPEPRINT_PKGCONFIG_LIBS)
list(JOIN TYPEPRINT_PKGCONFIG_LIBS " " TYPEPRINT_PKGCONFIG_LIBS)
configure_file(cmake/typeprint.pc.in ${PROJECT_BINARY_DIR}/typeprint.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/typeprint.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
