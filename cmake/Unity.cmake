# Compiles the files of a folder as one, which takes a fifth of the time: most of it goes into the standard headers.
# Names in unnamed namespaces must therefore be unique within a folder. Without it (-DTAVLYN_UNITY=OFF) each file is
# compiled alone, which shows whether it includes what it uses.
option(TAVLYN_UNITY "Compile each folder as one file" ON)

# tavlyn_unity(TARGET [PIECES]): compiles each folder of the target's sources as one file, or all of them as that many
# files.
function(tavlyn_unity target)
  if(NOT TAVLYN_UNITY)
    return()
  endif()
  set_target_properties(${target} PROPERTIES UNITY_BUILD ON UNITY_BUILD_MODE GROUP)
  get_target_property(sources ${target} SOURCES)
  list(FILTER sources INCLUDE REGEX "\\.cpp$")
  set(count 0)
  foreach(source IN LISTS sources)
    if(ARGC GREATER 1)
      math(EXPR group "${count} % ${ARGV1}")
      math(EXPR count "${count} + 1")
    else()
      get_filename_component(path ${source} ABSOLUTE)
      file(RELATIVE_PATH path ${PROJECT_SOURCE_DIR} ${path})
      get_filename_component(group ${path} DIRECTORY)
    endif()
    string(MAKE_C_IDENTIFIER "files_${group}" group)
    set_source_files_properties(${source} PROPERTIES UNITY_GROUP ${group})
  endforeach()
endfunction()
