# The layouts of cards as a string literal, for tavlynctl. The file itself shows how to write one's own.
include_guard(GLOBAL)
set(TAVLYN_CARD_LAYOUTS ${PROJECT_SOURCE_DIR}/tools/tavlynctl/cards/wiegand-layouts.txt)
file(READ ${TAVLYN_CARD_LAYOUTS} text)
file(GENERATE OUTPUT ${CMAKE_BINARY_DIR}/exports/wiegand-layouts.inc CONTENT "R\"file(${text})file\"\n")
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${TAVLYN_CARD_LAYOUTS})
