# What `cmake --install` copies, in three components: client, server, engines. What lies where is in
# settings.cmake, as the client has to find it.
set(man ${CMAKE_INSTALL_MANDIR})
set(packaging ${CMAKE_SOURCE_DIR}/packaging)

if(KELVARON_DESKTOP)
  install(TARGETS kelvaron DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT client)
  install(DIRECTORY assets/sounds DESTINATION ${KELVARON_DATA_DIR} COMPONENT client
    FILES_MATCHING PATTERN *.wav PATTERN game.wav EXCLUDE)
  install(FILES assets/sounds/game.wav DESTINATION ${KELVARON_DATA_DIR} COMPONENT client)
  set(icons ${CMAKE_INSTALL_DATADIR}/icons/hicolor)
  foreach(size 16 32 48 64 128 256)
    install(FILES assets/pictures/icon_${size}.png RENAME kelvaron.png
      DESTINATION ${icons}/${size}x${size}/apps COMPONENT client)
  endforeach()
  install(FILES assets/icon.svg RENAME kelvaron.svg
    DESTINATION ${icons}/scalable/apps COMPONENT client)
  install(FILES assets/kelvaron.desktop
    DESTINATION ${CMAKE_INSTALL_DATADIR}/applications COMPONENT client)
  install(FILES ${packaging}/kelvaron.metainfo.xml RENAME org.kelvaron.kelvaron.metainfo.xml
    DESTINATION ${CMAKE_INSTALL_DATADIR}/metainfo COMPONENT client)
  install(FILES ${packaging}/man/kelvaron.1 DESTINATION ${man}/man1 COMPONENT client)
endif()

if(KELVARON_SERVER)
  install(TARGETS kelvaron-server DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT server)
  configure_file(${packaging}/kelvaron-server.service ${CMAKE_BINARY_DIR}/kelvaron-server.service @ONLY)
  install(FILES ${CMAKE_BINARY_DIR}/kelvaron-server.service
    DESTINATION ${KELVARON_UNIT_DIR} COMPONENT server)
  install(FILES ${packaging}/kelvaron-server.sysusers RENAME kelvaron-server.conf
    DESTINATION lib/sysusers.d COMPONENT server)
  install(FILES ${packaging}/kelvaron-server.bash-completion RENAME kelvaron-server
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT server)
  install(FILES ${packaging}/man/kelvaron-server.1 DESTINATION ${man}/man1 COMPONENT server)
endif()

install(TARGETS engine_adapter doomsday_start DESTINATION ${KELVARON_ENGINES_DIR} COMPONENT engines)
# One program under four names, with the free game data under the names that the setup asks for.
foreach(name zdoomgl.exe doomsv.exe doomcl.exe)
  list(APPEND links ${name} zdoom.exe)
endforeach()
set(data ${KELVARON_GAME_DATA})
list(APPEND links DOOM.WAD ${data}/freedoom1.wad)
foreach(name DOOM2.WAD DOOM2F.WAD PLUTONIA.WAD TNT.WAD)
  list(APPEND links ${name} ${data}/freedoom2.wad)
endforeach()
while(links)
  list(POP_FRONT links name target)
  install(CODE "
    set(folder \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${KELVARON_ENGINES_DIR}\")
    file(MAKE_DIRECTORY \"\${folder}\")
    file(CREATE_LINK \"${target}\" \"\${folder}/${name}\" SYMBOLIC)
    list(APPEND CMAKE_INSTALL_MANIFEST_FILES \"\${CMAKE_INSTALL_PREFIX}/${KELVARON_ENGINES_DIR}/${name}\")"
    COMPONENT engines)
endwhile()
install(FILES ${packaging}/man/kelvaron-engines.7 DESTINATION ${man}/man7 COMPONENT engines)

# What `cmake --build . --target uninstall` takes away again: what the last install has copied.
add_custom_target(uninstall
  COMMAND ${CMAKE_COMMAND} -D manifest=${CMAKE_BINARY_DIR}/install_manifest.txt
          -P ${CMAKE_SOURCE_DIR}/cmake/uninstall.cmake
  VERBATIM)
