# Read by CPack when the files of a package lie in their folder, before they are packed: compresses
# the man pages, and adds what only a Debian package has.

set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY}${CPACK_PACKAGING_INSTALL_PREFIX})

# Compresses files without their names and times, which would differ from build to build.
function(compress)
  execute_process(
    COMMAND gzip -9 --no-name --force ${ARGN}
    COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# Writes a text below the root of the package.
function(write_text path text)
  file(WRITE ${root}/${path} "${text}")
  file(CHMOD ${root}/${path}
    FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
endfunction()

# The text of a file of this folder, with the values of variables.
function(filled result name)
  file(READ ${CPACK_KREL_FILES}/${name} text)
  string(CONFIGURE "${text}" text @ONLY)
  set(${result} "${text}" PARENT_SCOPE)
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
  filled(copyright copyright)
  write_text(${documents}/copyright "${copyright}")

  # The time is that of the release, not of the build.
  string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)
  filled(changelog changelog)
  write_text(${documents}/changelog.Debian "${changelog}")
  file(RENAME ${root}/${documents}/CHANGELOG.md ${root}/${documents}/changelog)
  compress(${root}/${documents}/changelog.Debian ${root}/${documents}/changelog)

  filled(overrides lintian-overrides)
  write_text(share/lintian/overrides/krelcc "${overrides}")
endif()
