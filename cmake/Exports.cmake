# The one list of exports: every prototype marked TAVLYN_API in the public headers. The version script and the .def
# file are written from it, so that a name cannot be declared without being exported, nor the reverse. The third file
# has a line EXPORT(name) for each, for code that goes through all of them.
function(tavlyn_write_export_lists map_file def_file inc_file)
  file(GLOB headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/include/api/*.h)
  set(names)
  foreach(header IN LISTS headers)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${header})
    file(STRINGS ${header} lines REGEX "^TAVLYN_API ")
    foreach(line IN LISTS lines)
      string(REGEX MATCH "([A-Za-z0-9_]+)\\(" found "${line}")
      list(APPEND names ${CMAKE_MATCH_1})
    endforeach()
  endforeach()
  list(SORT names)
  list(JOIN names ";\n    " globals)
  file(CONFIGURE OUTPUT ${map_file} CONTENT "TAVLYNAPI_7 {\n  global:\n    ${globals};\n  local:\n    *;\n};\n")
  list(JOIN names "\n  " exports)
  file(CONFIGURE OUTPUT ${def_file} CONTENT "LIBRARY tavlynapi.dll\nEXPORTS\n  ${exports}\n")
  list(TRANSFORM names REPLACE "(.+)" "EXPORT(\\1)\n" OUTPUT_VARIABLE calls)
  list(JOIN calls "" calls)
  file(CONFIGURE OUTPUT ${inc_file} CONTENT "${calls}")
endfunction()

# The import library for Visual C++ from the .def file. LLVM's tool makes it as Visual C++ itself does. Without that
# tool the package goes without: binutils make an archive in a format of their own.
function(tavlyn_visual_c_library def_file library)
  find_program(LLVM_DLLTOOL llvm-dlltool)
  if(NOT LLVM_DLLTOOL)
    message(WARNING "tavlynapi.lib is left out: llvm-dlltool is missing; scripts/setup --all installs it")
    return()
  endif()
  get_filename_component(folder ${library} DIRECTORY)
  file(MAKE_DIRECTORY ${folder})
  set(machine i386)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(machine i386:x86-64)
  endif()
  add_custom_command(OUTPUT ${library}
    COMMAND ${LLVM_DLLTOOL} -m ${machine} -d ${def_file} -l ${library}
    DEPENDS ${def_file} VERBATIM)
  add_custom_target(tavlyn_visual_c_library ALL DEPENDS ${library})
endfunction()
