# Compiles the files of a folder as one, which takes a fifth of the time: most of it goes into the standard headers.
# So names in unnamed namespaces are unique within a folder. Without it (-DTAVLYN_UNITY=OFF) each file is compiled
# alone, which shows whether it includes what it uses.
option(TAVLYN_UNITY "Compile each folder as one file" ON)

# tavlyn_unity(TARGET [PIECES]): every folder of the target's sources as one file, or as so many of about one size.
function(tavlyn_unity target)
  if(NOT TAVLYN_UNITY)
    return()
  endif()
  set(pieces 1)
  if(ARGC GREATER 1)
    set(pieces ${ARGV1})
  endif()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
  get_target_property(sources ${target} SOURCES)
  list(FILTER sources INCLUDE REGEX "\\.cpp$")
  set(count 0)
  foreach(source IN LISTS sources)
    get_filename_component(folder ${source} DIRECTORY)
    file(RELATIVE_PATH folder ${PROJECT_SOURCE_DIR} ${CMAKE_CURRENT_SOURCE_DIR}/${folder})
    math(EXPR piece "${count} % ${pieces}")
    string(MAKE_C_IDENTIFIER "${folder}_${piece}" group)
    set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${group})
    math(EXPR count "${count} + 1")
  endforeach()
endfunction()
