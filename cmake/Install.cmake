# What `cmake --install` puts under the prefix: the library with its SONAME
# links, the public headers, the fastinfoset program, a CMake package
# (find_package(KorvoFastInfoset)) and a pkg-config file (korvo-fastinfoset).

include(CMakePackageConfigHelpers)

set(KORVO_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/KorvoFastInfoset)
set(KORVO_PKGCONFIG_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

install(TARGETS KorvoFastInfoset EXPORT KorvoFastInfosetTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(TARGETS fastinfoset RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY include/Korvo DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})

install(EXPORT KorvoFastInfosetTargets
  NAMESPACE KorvoFastInfoset::
  DESTINATION ${KORVO_CMAKE_DIR})
list(JOIN KORVO_PLATFORM_COMPONENTS " " KORVO_POCO_COMPONENTS)
configure_package_config_file(cmake/KorvoFastInfosetConfig.cmake.in
  ${PROJECT_BINARY_DIR}/KorvoFastInfosetConfig.cmake
  INSTALL_DESTINATION ${KORVO_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/KorvoFastInfosetConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/KorvoFastInfosetConfig.cmake
  ${PROJECT_BINARY_DIR}/KorvoFastInfosetConfigVersion.cmake
  DESTINATION ${KORVO_CMAKE_DIR})

# The pkg-config file finds the prefix from its own place, so that it stays
# right for any `--prefix` given at install time.
set(KORVO_PC_LIBS "")
foreach(component ${KORVO_PLATFORM_COMPONENTS})
  string(APPEND KORVO_PC_LIBS " -lPoco${component}")
endforeach()
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}" OR IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
  set(KORVO_PC_PREFIX "${CMAKE_INSTALL_PREFIX}")
  set(KORVO_PC_LIBDIR "${CMAKE_INSTALL_FULL_LIBDIR}")
  set(KORVO_PC_INCLUDEDIR "${CMAKE_INSTALL_FULL_INCLUDEDIR}")
else()
  file(RELATIVE_PATH KORVO_PC_UP "/${KORVO_PKGCONFIG_DIR}" "/")
  string(REGEX REPLACE "/$" "" KORVO_PC_UP "${KORVO_PC_UP}")
  set(KORVO_PC_PREFIX "\${pcfiledir}/${KORVO_PC_UP}")
  set(KORVO_PC_LIBDIR "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
  set(KORVO_PC_INCLUDEDIR "\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}")
endif()
configure_file(cmake/korvo-fastinfoset.pc.in ${PROJECT_BINARY_DIR}/korvo-fastinfoset.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/korvo-fastinfoset.pc DESTINATION ${KORVO_PKGCONFIG_DIR})
