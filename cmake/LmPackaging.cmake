# Debian packages, made with `cpack -G DEB` from a build configured for /usr
# (scripts/package.sh): the runtime libraries with the data folder, the
# development files, and the Python module. Each install component is one
# package; a package's dependencies on Debian's libraries come from
# dpkg-shlibdeps, those between the three packages pin the exact version.
get_target_property(_lm_soversion lmspatialreference SOVERSION)
set(_lm_runtime_package liblmspatialreference${_lm_soversion})

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME liblmspatialreference)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
# Left empty, so the first line of each package's description below is its
# synopsis, rather than the project's description put in front of all three.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime dev)
if(LM_BUILD_PYTHON)
  list(APPEND CPACK_COMPONENTS_ALL python)
endif()

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_MAINTAINER "liblmspatialreference maintainers <maintainers@users.noreply.c-seed-eb909246.example>")
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
# The Python module links this project's own libraries, which no installed
# package provides yet: dpkg-shlibdeps finds them in the build tree and leaves
# that dependency to the one on the runtime package.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_LIBRARY_OUTPUT_DIRECTORY})

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${_lm_runtime_package})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
# The shlibs file lets packages built against this one depend on it through
# dpkg-shlibdeps too; the trigger refreshes the linker cache.
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers)
set(CPACK_DEBIAN_RUNTIME_DESCRIPTION "coordinate reference systems and transformations for GIS software
liblmspatialreference describes coordinate reference systems (from WKT, PROJ
strings, EPSG codes and a legacy parameter record) and moves coordinates
between them: projections, datum shifts, the China web-map offsets, affine
and estimated transformations, tile pyramids and geodesics. It builds on
GDAL and PROJ.
.
This package holds the shared libraries and the data folder of EPSG codes
and catalogue categories generated from PROJ's database.")

set(CPACK_DEBIAN_DEV_PACKAGE_NAME liblmspatialreference-dev)
set(CPACK_DEBIAN_DEV_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEV_DEPENDS runtime)
# The headers include GDAL's and PROJ's, and the CMake package and the
# pkg-config file ask for GDAL, PROJ and tinyxml2.
set(CPACK_DEBIAN_DEV_PACKAGE_DEPENDS "libgdal-dev, libproj-dev, libtinyxml2-dev")
set(CPACK_DEBIAN_DEV_DESCRIPTION "coordinate reference systems for GIS software - development files
liblmspatialreference describes coordinate reference systems and moves
coordinates between them, building on GDAL and PROJ.
.
This package holds the headers, the unversioned library links, the CMake
package (find_package(LmSpatialReference)) and the pkg-config file
(lmspatialreference).")

set(CPACK_DEBIAN_PYTHON_PACKAGE_NAME python3-lmspatialreference)
set(CPACK_DEBIAN_PYTHON_PACKAGE_SECTION python)
set(CPACK_COMPONENT_PYTHON_DEPENDS runtime)
# The extension is built for one Python minor version, which its file name
# (.cpython-311-...) tells.
if(LM_BUILD_PYTHON)
  get_target_property(_lm_python_suffix lmspatialreference_python SUFFIX)
  if(NOT _lm_python_suffix MATCHES "cpython-3([0-9]+)")
    message(FATAL_ERROR "Cannot tell the Python version of the module from its suffix ${_lm_python_suffix}")
  endif()
  math(EXPR _lm_python_next_minor "${CMAKE_MATCH_1} + 1")
  set(CPACK_DEBIAN_PYTHON_PACKAGE_DEPENDS
    "python3 (>= 3.${CMAKE_MATCH_1}), python3 (<< 3.${_lm_python_next_minor}), python3-numpy")
endif()
set(CPACK_DEBIAN_PYTHON_PACKAGE_SUGGESTS python3-dask)
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_EXTRA
  ${PROJECT_SOURCE_DIR}/cmake/debian/python/postinst ${PROJECT_SOURCE_DIR}/cmake/debian/python/prerm)
set(CPACK_DEBIAN_PYTHON_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PYTHON_DESCRIPTION "coordinate reference systems for GIS software - Python 3 module
liblmspatialreference describes coordinate reference systems and moves
coordinates between them, building on GDAL and PROJ.
.
This package holds the Python 3 module lmspatialreference, which
transforms NumPy arrays in place and maps transformations over Dask arrays.")

# Every package carries the copyright file and changelog Debian asks for.
set(_lm_debian_dir ${PROJECT_BINARY_DIR}/debian)
file(MAKE_DIRECTORY ${_lm_debian_dir})
configure_file(cmake/debian/changelog.in ${_lm_debian_dir}/changelog @ONLY)
execute_process(COMMAND gzip -9nc ${_lm_debian_dir}/changelog
  OUTPUT_FILE ${_lm_debian_dir}/changelog.Debian.gz COMMAND_ERROR_IS_FATAL ANY)
foreach(_lm_component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${_lm_component} _lm_upper)
  install(FILES ${PROJECT_SOURCE_DIR}/cmake/debian/copyright ${_lm_debian_dir}/changelog.Debian.gz
    DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${CPACK_DEBIAN_${_lm_upper}_PACKAGE_NAME}
    COMPONENT ${_lm_component} EXCLUDE_FROM_ALL)
endforeach()

include(CPack)
