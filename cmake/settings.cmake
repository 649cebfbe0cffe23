# What a distributor of Kelvaron chooses; it reaches the code through build_settings.h alone.
# All servers and stations default to loopback, where the companion server answers.
set(KELVARON_MASTER_SERVER "127.0.0.1" CACHE STRING "Address of the master chat server")
set(KELVARON_SECOND_SERVER "127.0.0.1" CACHE STRING "Address of the second chat server")
set(KELVARON_TOURNAMENT_SERVER "127.0.0.1" CACHE STRING "Address of the tournament chat server")
set(KELVARON_HOME_PAGE "http://localhost/kelvaron/" CACHE STRING "Home page that the logo opens")
set(KELVARON_CONTACT_ADDRESS "moderators@localhost" CACHE STRING "E-mail address told to banned users")
set(KELVARON_RADIO_HOST_KKRZ "127.0.0.1" CACHE STRING "Host of the station KKRZ")
set(KELVARON_RADIO_HOST_KSHE "127.0.0.1" CACHE STRING "Host of the station KSHE")
set(KELVARON_RADIO_HOST_KWJJ "127.0.0.1" CACHE STRING "Host of the station KWJJ")

set(KELVARON_UNIT_DIR "lib/systemd/system" CACHE STRING "Where the server's systemd unit is installed")
set(KELVARON_SERVICE_FOLDER "/var/lib/kelvaron-server" CACHE STRING 
  "Where commands look for the folder of the server's service; its unit names it by its own name")
set(KELVARON_GAME_DATA "/usr/share/games/doom" CACHE STRING "Where the system's packages put game data")

# Where installed things lie, as the programs find them: from their own folder, so that a prefix can
# be moved.
include(GNUInstallDirs)
set(KELVARON_DATA_DIR ${CMAKE_INSTALL_DATADIR}/kelvaron)
set(KELVARON_ENGINES_DIR ${CMAKE_INSTALL_LIBDIR}/kelvaron/engines)
file(RELATIVE_PATH KELVARON_DATA_FROM_PROGRAMS
  ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_DATADIR}/kelvaron)
file(RELATIVE_PATH KELVARON_ENGINES_FROM_PROGRAMS
  ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR}/kelvaron/engines)

configure_file(${CMAKE_CURRENT_LIST_DIR}/build_settings.h.in ${CMAKE_BINARY_DIR}/generated/build_settings.h @ONLY)
