# What an installation and a package contain: library, headers, CMake package, pages; the tools install themselves.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(headers_folder ${CMAKE_INSTALL_INCLUDEDIR}/tavlynapi)
set(package_folder ${CMAKE_INSTALL_LIBDIR}/cmake/tavlynapi)
target_include_directories(tavlynapi INTERFACE $<INSTALL_INTERFACE:${headers_folder}>)
install(TARGETS tavlynapi EXPORT tavlynapi
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(FILES include/api.h DESTINATION ${headers_folder})
install(DIRECTORY include/api DESTINATION ${headers_folder} FILES_MATCHING PATTERN *.h)
install(EXPORT tavlynapi NAMESPACE tavlynapi:: FILE tavlynapi-config.cmake DESTINATION ${package_folder})
write_basic_package_version_file(${CMAKE_CURRENT_BINARY_DIR}/tavlynapi-config-version.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/tavlynapi-config-version.cmake DESTINATION ${package_folder})
# The pages link to the README beside them and to files below docs/.
install(FILES README.md CHANGELOG.md SECURITY.md LICENSE DESTINATION ${CMAKE_INSTALL_DOCDIR})
install(DIRECTORY docs examples DESTINATION ${CMAKE_INSTALL_DOCDIR}
  PATTERN Doxyfile EXCLUDE
  PATTERN docs/protocol EXCLUDE
  PATTERN docs/threads EXCLUDE)
if(WIN32)
  # Other compilers can make their import library from it.
  install(FILES ${TAVLYN_DEF} DESTINATION ${CMAKE_INSTALL_LIBDIR})
  if(TARGET tavlyn_visual_c_library)
    install(FILES ${TAVLYN_LIB} DESTINATION ${CMAKE_INSTALL_LIBDIR})
  endif()
else()
  install(FILES packaging/70-tavlyn.rules DESTINATION lib/udev/rules.d)
endif()

set(CPACK_PACKAGE_NAME tavlynapi)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "Card readers, a magnetic-stripe reader and a sonar sensor from plain C")
set(CPACK_RESOURCE_FILE_LICENSE ${CMAKE_CURRENT_SOURCE_DIR}/LICENSE)
set(CPACK_STRIP_FILES ON)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_SYSTEM_NAME windows-x64)
  # The simulator is a zip of its own, for the same folder: not everyone should have to take a program that antivirus
  # software may object to.
  set(CPACK_PACKAGE_FILE_NAME ${CPACK_PACKAGE_NAME}-${CPACK_PACKAGE_VERSION}-${CPACK_SYSTEM_NAME})
  set(CPACK_ARCHIVE_COMPONENT_INSTALL ON)
  set(CPACK_COMPONENT_INCLUDE_TOPLEVEL_DIRECTORY ON)
  set(CPACK_ARCHIVE_UNSPECIFIED_FILE_NAME ${CPACK_PACKAGE_FILE_NAME})
  set(CPACK_ARCHIVE_SIMULATOR_FILE_NAME ${CPACK_PACKAGE_FILE_NAME}-simulator)
else()
  set(CPACK_GENERATOR TGZ)
endif()
include(CPack)
