# Libraries of the tools that are headers alone. They serve every system, but for another system than the one that
# builds they may not bring this one's header folder along: they are copied out of it.
if(NOT CMAKE_CROSSCOMPILING)
  find_package(CLI11 REQUIRED)
  find_package(nlohmann_json 3.10 REQUIRED)
  return()
endif()

set(header_folder ${CMAKE_BINARY_DIR}/header_libraries)
function(tavlyn_header_library target folder probe)
  find_path(${folder}_HEADERS ${folder}/${probe} PATHS /usr/include NO_CMAKE_FIND_ROOT_PATH REQUIRED)
  file(COPY ${${folder}_HEADERS}/${folder} DESTINATION ${header_folder})
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} INTERFACE ${header_folder})
endfunction()
tavlyn_header_library(CLI11::CLI11 CLI CLI.hpp)
tavlyn_header_library(nlohmann_json::nlohmann_json nlohmann json.hpp)
