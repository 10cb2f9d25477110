# The Debian packages, made by CPack. scripts/package.sh builds them.
set(VADELCLIP_MAINTAINER "Vadelclip authors <authors@vadelclip.invalid>" CACHE STRING "Maintainer of the package")

# Debian's changelog names the release and refers to CHANGELOG.md. The time is SOURCE_DATE_EPOCH if it is set.
set(debianVersion ${PROJECT_VERSION}-1)
string(TIMESTAMP packageDate "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(packaging/changelog.Debian.in ${PROJECT_BINARY_DIR}/changelog.Debian @ONLY)
install_compressed(${PROJECT_BINARY_DIR}/changelog.Debian ${documents} changelog.Debian)

install(FILES packaging/lintian-overrides DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME vadelclip)

# The driver of GDAL is a separate package, with separate copies of the texts that every package has.
set(CPACK_COMPONENTS_ALL Unspecified)
if(TARGET ogr_VadeDGM)
  list(APPEND CPACK_COMPONENTS_ALL gdal)
  set(gdalDocuments ${CMAKE_INSTALL_DATADIR}/doc/vadelclip-gdal)
  configure_file(packaging/changelog-gdal.Debian.in ${PROJECT_BINARY_DIR}/changelog-gdal.Debian @ONLY)
  install_compressed(${PROJECT_BINARY_DIR}/changelog-gdal.Debian ${gdalDocuments} changelog.Debian gdal)
  install(FILES packaging/copyright DESTINATION ${gdalDocuments} COMPONENT gdal)
  install(FILES packaging/lintian-overrides-gdal DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides
    RENAME vadelclip-gdal COMPONENT gdal)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_UNSPECIFIED_PACKAGE_NAME vadelclip)
set(CPACK_DEBIAN_UNSPECIFIED_DESCRIPTION
"clips elevation data to the boundaries of a model
Vadelclip reads a directory of node files (x, y, z as text), keeps exactly the
lines whose point is in a polygon of an XML boundary file, byte for byte,
and writes them to a new directory next to the input. It is made as one step of
a larger process: it asks nothing, is silent on success, and can report every
step to the process that controls it.
.
Vadelwatch, in the same package, starts it for people: with progress, a
summary, a check of the output and a map of the result. Vadelshard splits a
job into shards for many cores or machines.")
set(CPACK_DEBIAN_UNSPECIFIED_PACKAGE_RECOMMENDS parallel)
set(CPACK_DEBIAN_UNSPECIFIED_PACKAGE_SUGGESTS "bash-completion, slurm-client, vadelclip-gdal")
set(CPACK_DEBIAN_GDAL_PACKAGE_NAME vadelclip-gdal)
set(CPACK_DEBIAN_GDAL_PACKAGE_SUGGESTS "gdal-bin, qgis, vadelclip")
set(CPACK_DEBIAN_GDAL_DESCRIPTION
"lets GDAL read and write boundary files of Vadelclip
A plugin for GDAL: ogr2ogr, ogrinfo, QGIS, Python and R read and write the XML
boundary files of Vadelclip like any other vector format. Polygons with holes
are written as rings that leave the holes out, and read back with holes.")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vadelclip)
set(CPACK_PACKAGE_VENDOR "Vadelclip authors")
set(CPACK_PACKAGE_CONTACT ${VADELCLIP_MAINTAINER})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_THREADS 1)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
if(CMAKE_CROSSCOMPILING)
  set(CPACK_DEBIAN_PACKAGE_ARCHITECTURE arm64)
  set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
    ${CMAKE_SYSROOT}/lib/aarch64-linux-gnu ${CMAKE_SYSROOT}/usr/lib/aarch64-linux-gnu)
endif()
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
include(CPack)
