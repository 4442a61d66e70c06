# Installs headers, both libraries, a CMake package and a
# pkg-config file, so consumers can use either find_package or pkg-config.
# Components follow the Debian packages (LmPackaging.cmake): runtime holds
# what a program needs to run, dev what it needs to be built.
include(CMakePackageConfigHelpers)

install(TARGETS lmutility lmspatialreference
  EXPORT LmSpatialReferenceTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT dev
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT dev
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime
  INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(DIRECTORY include/lmspatialreference DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT dev)
# The data folder is installed by datagen/, which generates it.

set(_lm_cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/LmSpatialReference)
install(EXPORT LmSpatialReferenceTargets
  NAMESPACE LmSpatialReference::
  DESTINATION ${_lm_cmake_dir}
  COMPONENT dev)
configure_package_config_file(cmake/LmSpatialReferenceConfig.cmake.in
  ${PROJECT_BINARY_DIR}/LmSpatialReferenceConfig.cmake
  INSTALL_DESTINATION ${_lm_cmake_dir})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/LmSpatialReferenceConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES
  ${PROJECT_BINARY_DIR}/LmSpatialReferenceConfig.cmake
  ${PROJECT_BINARY_DIR}/LmSpatialReferenceConfigVersion.cmake
  DESTINATION ${_lm_cmake_dir}
  COMPONENT dev)

# The .pc file locates the prefix from its own folder, so it stays right for
# `cmake --install --prefix` and for relocated installs.
file(RELATIVE_PATH LM_PC_PREFIX_FROM_PCFILEDIR "/root/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/root")
configure_file(cmake/lmspatialreference.pc.in ${PROJECT_BINARY_DIR}/lmspatialreference.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/lmspatialreference.pc
  DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT dev)
