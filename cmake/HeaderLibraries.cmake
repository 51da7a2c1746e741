# Header-only libraries of the tools. They serve every system, but a cross build must not see the build machine's
# whole header folder, so they are copied out of it. Where they are missing the tools are left out with a warning; the
# library needs none of them.
function(tavlyn_header_library target folder probe)
  find_path(${folder}_HEADERS ${folder}/${probe} PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH)
  if(${folder}_HEADERS)
    file(COPY ${${folder}_HEADERS}/${folder} DESTINATION ${CMAKE_BINARY_DIR}/header_libraries)
    add_library(${target} INTERFACE IMPORTED GLOBAL)
    target_include_directories(${target} INTERFACE ${CMAKE_BINARY_DIR}/header_libraries)
  endif()
endfunction()

if(CMAKE_CROSSCOMPILING)
  tavlyn_header_library(CLI11::CLI11 CLI CLI.hpp)
  tavlyn_header_library(nlohmann_json::nlohmann_json nlohmann json.hpp)
else()
  find_package(CLI11 QUIET)
  find_package(nlohmann_json 3.10 QUIET)
endif()

if(NOT TARGET CLI11::CLI11 OR NOT TARGET nlohmann_json::nlohmann_json)
  if(TAVLYN_TESTS)
    message(FATAL_ERROR "The tests need CLI11 and nlohmann-json 3.10; scripts/setup installs them")
  endif()
  message(WARNING "tavlynctl and tavlynsim are left out: CLI11 or nlohmann-json 3.10 is missing; "
    "scripts/setup installs them, -DTAVLYN_TOOLS=OFF says that this is meant")
  set(TAVLYN_TOOLS OFF)
endif()
