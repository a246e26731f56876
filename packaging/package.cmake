# The packages: a Debian package and a relocatable tarball, made by CPack of what is installed.
# script/package says how.

set(CPACK_PACKAGE_NAME krelcc)
set(CPACK_PACKAGE_VENDOR "krelcc")
set(CPACK_PACKAGE_CONTACT "krelcc authors <authors@krelcc.example>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "compiler and tools for the Krel language")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Krel is a small, strictly typed imperative language. krelcc compiles it to
static executables, by an assembler and a linker of its own: no C compiler is
needed.
.
The command krel runs programs, tells all that is wrong with them at once and
repairs it, lays them out, and serves editors.")
set(CPACK_GENERATOR DEB TGZ)
set(CPACK_STRIP_FILES ON)
set(CPACK_OUTPUT_FILE_PREFIX ${CMAKE_BINARY_DIR}/packages)
set(CPACK_PACKAGE_FILE_NAME krelcc-${PROJECT_VERSION}-linux-x86_64)  # the tarball's
set(CPACK_PROJECT_CONFIG_FILE ${CMAKE_CURRENT_LIST_DIR}/generator.cmake)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/finish.cmake)
set(CPACK_KREL_FILES ${CMAKE_CURRENT_LIST_DIR}/debian)  # for finish.cmake

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE 1)
set(CPACK_DEBIAN_PACKAGE_SECTION devel)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS "gcc | clang")
set(CPACK_DEBIAN_PACKAGE_SUGGESTS
  "bash-completion, cmake | make | ninja-build, emacs | neovim | vim")

include(CPack)
