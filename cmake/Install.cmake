# What an installation contains, by components: library, development (headers, CMake package, pkg-config), doc; the
# tools install themselves (tools, simulator, agent); python.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(headers_folder ${CMAKE_INSTALL_INCLUDEDIR}/tavlynapi)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/tavlynapi)
target_include_directories(tavlynapi INTERFACE $<INSTALL_INTERFACE:${headers_folder}>)
install(TARGETS tavlynapi EXPORT tavlynapi
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
if(WIN32)
  # Other compilers can make their import library from it.
  install(FILES ${TAVLYN_DEF} DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
  if(TARGET tavlyn_visual_c_library)
    install(FILES ${TAVLYN_LIB} DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
  endif()
else()
  install(FILES packaging/70-tavlyn.rules DESTINATION lib/udev/rules.d COMPONENT library)
  install(FILES man/tavlynapi.rules.5 DESTINATION ${CMAKE_INSTALL_MANDIR}/man5 COMPONENT library)
  install(FILES man/tavlynapi.3 DESTINATION ${CMAKE_INSTALL_MANDIR}/man3 COMPONENT development)
  include(cmake/Python.cmake)
endif()
if(TARGET tavlynd)
  include(cmake/Agent.cmake)
endif()

install(FILES include/api.h include/tavlyn.hpp DESTINATION ${headers_folder} COMPONENT development)
install(DIRECTORY include/api DESTINATION ${headers_folder} COMPONENT development FILES_MATCHING PATTERN *.h)
install(DIRECTORY include/tavlyn DESTINATION ${headers_folder} COMPONENT development FILES_MATCHING PATTERN *.hpp)
install(EXPORT tavlynapi NAMESPACE tavlynapi:: FILE tavlynapi-targets.cmake DESTINATION ${package_folder}
  COMPONENT development)
configure_file(packaging/tavlynapi-config.cmake.in ${CMAKE_CURRENT_BINARY_DIR}/tavlynapi-config.cmake COPYONLY)
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/tavlynapi-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/tavlynapi-config.cmake ${CMAKE_CURRENT_BINARY_DIR}/tavlynapi-config-version.cmake
  DESTINATION ${package_folder} COMPONENT development)
file(RELATIVE_PATH up_from_pkgconfig /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
string(REGEX REPLACE "/$" "" up_from_pkgconfig ${up_from_pkgconfig})
list(TRANSFORM TAVLYN_STATIC_LIBRARIES PREPEND " -l" OUTPUT_VARIABLE private_libraries)
list(JOIN private_libraries "" private_libraries)
configure_file(packaging/tavlynapi.pc.in ${CMAKE_CURRENT_BINARY_DIR}/tavlynapi.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/tavlynapi.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
  COMPONENT development)

include(cmake/Description.cmake)

# As they are in the sources, because they link to each other and to the headers.
install(FILES README.md CHANGELOG.md CONTRIBUTING.md SECURITY.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR}
  COMPONENT doc)
install(DIRECTORY docs examples include DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT doc
  PATTERN Doxyfile EXCLUDE
  PATTERN docs/protocol EXCLUDE
  PATTERN docs/renewal EXCLUDE
  PATTERN docs/threads EXCLUDE)
# The headers as web pages, once they are built.
add_custom_target(api-reference COMMAND python3 ${PROJECT_SOURCE_DIR}/scripts/check-headers ${CMAKE_BINARY_DIR}/api-reference)
install(DIRECTORY ${CMAKE_BINARY_DIR}/api-reference/html DESTINATION ${CMAKE_INSTALL_DOCDIR}/reference COMPONENT doc OPTIONAL)

include(cmake/Packages.cmake)
