# krel_install(<target>): installs a program in the folder where all of ours lie beside each other,
# with a link to it where programs are looked for. They find each other, and what they need, by the
# place of their own file, whatever link they are started by.
function(krel_install target)
  install(TARGETS ${target} DESTINATION ${CMAKE_INSTALL_LIBDIR}/krelcc)
  install(CODE "
    file(RELATIVE_PATH target
      \"/${CMAKE_INSTALL_BINDIR}\" \"/${CMAKE_INSTALL_LIBDIR}/krelcc/${target}\")
    set(bin \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}\")
    file(MAKE_DIRECTORY \"\${bin}\")
    file(CREATE_LINK \"\${target}\" \"\${bin}/${target}\" SYMBOLIC)")
endfunction()
