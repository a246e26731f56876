# Read by CPack before each kind of package: where the files go in it.

if(CPACK_GENERATOR STREQUAL "DEB")
  set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
else()
  set(CPACK_PACKAGING_INSTALL_PREFIX "")
endif()
