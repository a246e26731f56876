# Read by CPack when the files of a package lie in their folder, before they are packed: compresses
# the man pages, and adds what only a Debian package has.

set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY}${CPACK_PACKAGING_INSTALL_PREFIX})

# Compresses files without their names and times, which would differ from build to build.
function(compress)
  execute_process(
    COMMAND gzip -9 --no-name --force ${ARGN}
    COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# Puts a file of this folder into the package, with the values of variables filled in.
function(fill name path)
  configure_file(${CPACK_KREL_FILES}/${name} ${root}/${path} @ONLY
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endfunction()

file(GLOB pages ${root}/share/man/man*/*.[17])
compress(${pages})

if(CPACK_GENERATOR STREQUAL "DEB")
  set(documents share/doc/krelcc)

  # What Debian calls the license.
  file(READ ${root}/${documents}/LICENSE license)
  file(REMOVE ${root}/${documents}/LICENSE)
  string(REGEX REPLACE "^MIT License\n\n[^\n]*\n\n" "" license "${license}")
  string(REGEX REPLACE "\n\n" "\n.\n" license "${license}")
  string(REGEX REPLACE "\n$" "" license "${license}")
  string(REPLACE "\n" "\n " license "${license}")
  fill(copyright ${documents}/copyright)

  # The time is that of the release, not of the build.
  string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
  fill(changelog ${documents}/changelog.Debian)
  file(RENAME ${root}/${documents}/CHANGELOG.md ${root}/${documents}/changelog)
  compress(${root}/${documents}/changelog.Debian ${root}/${documents}/changelog)

  fill(lintian-overrides share/lintian/overrides/krelcc)
endif()
