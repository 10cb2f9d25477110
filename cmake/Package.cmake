# The Debian package, made by CPack. scripts/package.sh builds it.
set(VADELCLIP_MAINTAINER "Vadelclip authors <authors@vadelclip.invalid>" CACHE STRING "Maintainer of the package")

# Debian's changelog names the release and refers to CHANGELOG.md. The time is SOURCE_DATE_EPOCH if it is set.
set(debianVersion ${PROJECT_VERSION}-1)
string(TIMESTAMP packageDate "%a, %d %b %Y %H:%M:%S +0000" UTC)
configure_file(packaging/changelog.Debian.in ${PROJECT_BINARY_DIR}/changelog.Debian @ONLY)
install_compressed(${PROJECT_BINARY_DIR}/changelog.Debian ${documents} changelog.Debian)

install(FILES packaging/lintian-overrides DESTINATION ${CMAKE_INSTALL_DATADIR}/lintian/overrides RENAME vadelclip)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME vadelclip)
set(CPACK_PACKAGE_VENDOR "Vadelclip authors")
set(CPACK_PACKAGE_CONTACT ${VADELCLIP_MAINTAINER})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "clips elevation data to the boundaries of a model")
set(CPACK_PACKAGE_DESCRIPTION
"Vadelclip reads a directory of node files (x, y, z as text), keeps exactly the
lines whose point is in a polygon of an XML boundary file, byte for byte,
and writes them to a new directory next to the input. It is made as one step of
a larger process: it asks nothing, is silent on success, and can report every
step to the process that controls it.
.
Vadelwatch, in the same package, starts it for people: with progress, a
summary, a check of the output and a map of the result. Vadelshard splits a
job into shards for many cores or machines.")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_THREADS 1)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
# The engines of Vadelshard.
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS parallel)
set(CPACK_DEBIAN_PACKAGE_SUGGESTS "bash-completion, slurm-client")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
include(CPack)
