# tavlyn_harden(TARGET...): compiler and linker options that make memory errors hard to exploit, for everything that
# users run. Nothing of the folder and of the time that it is built in gets into these files.
include(CheckCXXCompilerFlag)

set(tavlyn_hardening
  $<$<CONFIG:Release>:-ffile-prefix-map=${PROJECT_SOURCE_DIR}=.>
  $<$<CONFIG:Release>:-ffile-prefix-map=${PROJECT_BINARY_DIR}=build>)
set(TAVLYN_FORTIFIED 0)
if(WIN32)
  # No stack protector: its run time opens a crypto provider while the DLL is being loaded.
  set(tavlyn_link_hardening -Wl,--dynamicbase -Wl,--nxcompat -Wl,--no-insert-timestamp)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    list(APPEND tavlyn_link_hardening -Wl,--high-entropy-va)
  endif()
else()
  set(tavlyn_link_hardening -Wl,-z,relro -Wl,-z,now)
  # The last one exists only for x86.
  foreach(flag -fstack-protector-strong -fstack-clash-protection -fcf-protection)
    string(MAKE_C_IDENTIFIER "TAVLYN_HAS${flag}" known)
    check_cxx_compiler_flag(${flag} ${known})
    if(${known})
      list(APPEND tavlyn_hardening ${flag})
    endif()
  endforeach()
  # The system's start files lack the mark, though they do nothing that a shadow stack forbids.
  if(TAVLYN_HAS_fcf_protection)
    list(APPEND tavlyn_link_hardening -Wl,-z,shstk)
  endif()
  # Checked copies need an optimised build, and hide accesses from sanitizers.
  if(NOT "${CMAKE_CXX_FLAGS}" MATCHES "-fsanitize" AND NOT TAVLYN_FUZZ)
    set(TAVLYN_FORTIFIED $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
    list(APPEND tavlyn_hardening
      $<${TAVLYN_FORTIFIED}:-U_FORTIFY_SOURCE> $<${TAVLYN_FORTIFIED}:-D_FORTIFY_SOURCE=3>)
  endif()
endif()

function(tavlyn_harden)
  foreach(target IN LISTS ARGN)
    target_compile_options(${target} PRIVATE ${tavlyn_hardening})
    get_target_property(type ${target} TYPE)
    if(NOT type MATCHES "^(OBJECT|STATIC)_LIBRARY$")
      target_link_options(${target} PRIVATE ${tavlyn_link_hardening})
    endif()
  endforeach()
endfunction()
