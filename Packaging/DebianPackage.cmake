# The Debian package, by CPack: what it says of itself and what it depends on.

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME tarvane)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_CONTACT ${TARVANE_MAINTAINER})
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR})
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
# All but the licence's text.
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL Unspecified)
set(CPACK_COMPONENTS_GROUPING ALL_COMPONENTS_IN_ONE)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "live sound level, loudness and spectrum meter")
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"Tarvane reads a measurement microphone, any input of an interface, or what
the computer itself is playing, through PipeWire, and shows its sound level
(A, C, Z; Fast, Slow, Peak, Leq), programme loudness (ITU-R BS.1770, EBU R
128), real-time spectrum, spectrogram and level history, for any number of
channels. Levels are calibrated by a microphone file or a reference tone,
and a session becomes a report.")
# The libraries that the program is linked with, by what Debian knows of their symbols; the audio
# server with its modules and settings, which the client library loads when it connects.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_DEPENDS "pipewire (>= 0.3.65)")
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS
  "wireplumber, fonts-dejavu-core, fonts-quicksand, qt6-wayland")

# One date in all of the package, which CPack takes from the environment.
file(CONFIGURE OUTPUT "${CMAKE_CURRENT_BINARY_DIR}/PackageDate.cmake"
  CONTENT "set(ENV{SOURCE_DATE_EPOCH} @TARVANE_SOURCE_DATE@)\n" @ONLY)
set(CPACK_PROJECT_CONFIG_FILE "${CMAKE_CURRENT_BINARY_DIR}/PackageDate.cmake")

# It is packed for good there.
set(CPACK_POST_BUILD_SCRIPTS "${CMAKE_CURRENT_SOURCE_DIR}/FinishPackage.cmake")
set(CPACK_DEBIAN_COMPRESSION_TYPE none)

include(CPack)
