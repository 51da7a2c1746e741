# The description of the interface for programs, api.json, from the headers and tables (bindings/describe).

# Debian's Python, which has Debian's packages: another one may come before it in PATH.
find_program(TAVLYN_PYTHON python3 PATHS /usr/bin NO_DEFAULT_PATH)
find_program(TAVLYN_PYTHON python3)
if(NOT TAVLYN_PYTHON)
  message(STATUS "api.json is left out: Python 3 is missing")
  return()
endif()

set(TAVLYN_DESCRIBE ${PROJECT_SOURCE_DIR}/bindings/describe/describe)
file(GLOB TAVLYN_DESCRIBED CONFIGURE_DEPENDS include/api/*.h src/core/*.inc bindings/describe/*.py)
list(APPEND TAVLYN_DESCRIBED ${TAVLYN_DESCRIBE} ${PROJECT_SOURCE_DIR}/tools/tavlynctl/config/meanings.inc
  ${PROJECT_SOURCE_DIR}/tools/tavlynctl/trouble/error_words.inc ${PROJECT_SOURCE_DIR}/docs/products.md)
function(tavlyn_describe option file)
  add_custom_command(OUTPUT ${file} COMMAND ${TAVLYN_PYTHON} -B ${TAVLYN_DESCRIBE} ${option} ${file}
    DEPENDS ${TAVLYN_DESCRIBED} VERBATIM)
endfunction()

tavlyn_describe(--api ${CMAKE_BINARY_DIR}/api.json)
add_custom_target(api-json ALL DEPENDS ${CMAKE_BINARY_DIR}/api.json)
install(FILES ${CMAKE_BINARY_DIR}/api.json DESTINATION ${CMAKE_INSTALL_DATADIR}/tavlynapi COMPONENT development)
