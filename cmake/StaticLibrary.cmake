# The library for programs that want no second file (-DTAVLYN_STATIC=ON). All of it is one object file in the archive:
# the load and unload steps, which no program calls by name, would otherwise be left out.
if(WIN32)
  message(FATAL_ERROR "TAVLYN_STATIC is for Linux: only a DLL is told by Windows that the process begins and ends")
endif()
if(TAVLYN_TESTS OR TAVLYN_BENCH)
  message(FATAL_ERROR "TAVLYN_STATIC goes without tests and benchmarks, which load the shared library")
endif()

add_library(tavlyn_host OBJECT ${platform_sources} src/core/front/load_${system}.cpp)
tavlyn_unity(tavlyn_host)
target_link_libraries(tavlyn_host PRIVATE tavlyn_core tavlyn_warnings)
tavlyn_harden(tavlyn_core tavlyn_host)

set(whole ${CMAKE_CURRENT_BINARY_DIR}/tavlynapi.o)
separate_arguments(flags UNIX_COMMAND "${CMAKE_CXX_FLAGS}")
add_custom_command(OUTPUT ${whole} COMMAND_EXPAND_LISTS VERBATIM
  COMMAND ${CMAKE_CXX_COMPILER} ${flags} -r -nostdlib -o ${whole} $<TARGET_OBJECTS:tavlyn_core> $<TARGET_OBJECTS:tavlyn_host>
  DEPENDS tavlyn_core tavlyn_host $<TARGET_OBJECTS:tavlyn_core> $<TARGET_OBJECTS:tavlyn_host>)
add_library(tavlynapi STATIC ${whole})
# Programs in C link it too, so the C++ runtime is named.
set_target_properties(tavlynapi PROPERTIES LINKER_LANGUAGE C)
set(TAVLYN_STATIC_LIBRARIES stdc++ m ${CMAKE_DL_LIBS})
target_link_libraries(tavlynapi INTERFACE ${TAVLYN_STATIC_LIBRARIES})
