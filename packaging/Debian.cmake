# Debian packages of the installation, one per component: `pindle`, and `pindle-evolution` where the
# build has it.
set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL pindle)
if(TARGET pindle-evolution)
  list(APPEND CPACK_COMPONENTS_ALL evolution)
endif()
set(CPACK_PACKAGE_NAME pindle)
set(CPACK_PACKAGE_VENDOR "The Pindle developers")
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_VERBATIM_VARIABLES ON)

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_RELEASE ${PINDLE_PACKAGE_REVISION})
set(CPACK_DEBIAN_PACKAGE_MAINTAINER ${PINDLE_PACKAGE_MAINTAINER})
set(CPACK_DEBIAN_PACKAGE_HOMEPAGE ${PINDLE_WEBSITE_URL})
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)

set(CPACK_DEBIAN_PINDLE_PACKAGE_NAME pindle)
set(CPACK_DEBIAN_PINDLE_PACKAGE_SECTION utils)
# The links are opened with xdg-open; zones are read from the system's tz database.
set(CPACK_DEBIAN_PINDLE_PACKAGE_DEPENDS "xdg-utils, tzdata")
set(CPACK_DEBIAN_PINDLE_PACKAGE_RECOMMENDS "at-spi2-core, default-dbus-session-bus | dbus-session-bus")
set(CPACK_DEBIAN_PINDLE_PACKAGE_SUGGESTS "pindle-evolution")
set(CPACK_DEBIAN_PINDLE_DESCRIPTION "highlighted text becomes a calendar event
Highlight text in any application and press Super+Shift+E: a small panel opens
at the pointer with the event already filled in (title, place, start, end and
time zone). Correct it, then save it to your calendar or open it prefilled in a
web calendar.
.
The text is converted on your own machine. This package also has
pindle-convert, which does the same for scripts.")

set(CPACK_DEBIAN_EVOLUTION_PACKAGE_NAME pindle-evolution)
set(CPACK_DEBIAN_EVOLUTION_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_EVOLUTION_PACKAGE_DEPENDS "pindle (= ${package_version})")
set(CPACK_DEBIAN_EVOLUTION_PACKAGE_RECOMMENDS "evolution-data-server")
set(CPACK_DEBIAN_EVOLUTION_PACKAGE_ENHANCES "pindle")
set(CPACK_DEBIAN_EVOLUTION_DESCRIPTION "save events of Pindle to the desktop's own calendar
With this package Pindle saves events to the default calendar of Evolution Data
Server, and so to every calendar that GNOME Online Accounts or Evolution were
told of. Without it Pindle keeps one iCalendar file per event.")

include(CPack)
