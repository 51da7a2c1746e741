# Makes the package, unpacks it, checks its contents, builds and runs the consumer with it.
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    message(FATAL_ERROR "${ARGN}: ${result}\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

# This run's own folder; after a failure it stays for inspection.
string(RANDOM LENGTH 12 run)
set(WORK ${WORK}/${run})
file(MAKE_DIRECTORY ${WORK})
run(${CPACK} --config ${BUILD}/CPackConfig.cmake -B ${WORK})
file(GLOB archive ${WORK}/*.zip ${WORK}/*.tar.gz)
if(WINDOWS)
  set(simulator ${archive})
  list(FILTER simulator INCLUDE REGEX "-simulator")
  list(REMOVE_ITEM archive ${simulator})
endif()
file(ARCHIVE_EXTRACT INPUT ${archive} DESTINATION ${WORK})
get_filename_component(name ${archive} NAME)
string(REGEX REPLACE "\\.(zip|tar\\.gz)$" "" name ${name})
set(root ${WORK}/${name})
if(WINDOWS)
  file(GLOB_RECURSE simulated ${root}/bin/tavlynsim* ${root}/bin/simulator/*)
  if(simulated)
    message(FATAL_ERROR "${archive} is for customers, and has ${simulated}")
  endif()
  file(ARCHIVE_EXTRACT INPUT ${simulator} DESTINATION ${WORK})
endif()

set(wanted include/tavlynapi/api.h include/tavlynapi/api/types.h include/tavlynapi/tavlyn.hpp
  include/tavlynapi/tavlyn/fields.hpp lib/cmake/tavlynapi/tavlynapi-config.cmake
  lib/cmake/tavlynapi/tavlynapi-config-version.cmake share/doc/tavlynapi/README.md share/doc/tavlynapi/LICENSE
  share/doc/tavlynapi/SECURITY.md share/doc/tavlynapi/include/api.h lib/pkgconfig/tavlynapi.pc
  share/tavlynapi/wiegand-layouts.txt share/tavlynapi/api.json include/tavlynapi/api/error_text.h)
if(WINDOWS)
  list(APPEND wanted bin/tavlynapi.dll bin/tavlynctl.exe bin/tavlynsim.exe bin/simulator/hid.dll
    bin/simulator/setupapi.dll lib/libtavlynapi.dll.a lib/tavlynapi.def lib/tavlynapi.lib bin/tavlynctl-completion.ps1)
else()
  list(APPEND wanted bin/tavlynctl bin/tavlynsim lib/libtavlynapi.so lib/libtavlynapi.so.7 lib/libtavlynapi.so.${VERSION}
    lib/udev/rules.d/70-tavlyn.rules share/man/man1/tavlynctl.1 share/man/man1/tavlynctl-config.1
    share/man/man1/tavlynsim.1 share/man/man3/tavlynapi.3 share/man/man5/tavlynapi.rules.5
    share/bash-completion/completions/tavlynctl share/zsh/vendor-completions/_tavlynctl
    share/fish/vendor_completions.d/tavlynctl.fish lib/python3/dist-packages/tavlynapi/py.typed)
endif()
foreach(file IN LISTS wanted)
  if(NOT EXISTS ${root}/${file})
    message(FATAL_ERROR "${archive} has no ${file}")
  endif()
endforeach()

# What is linked in has a name and a version each, and the licences' texts are there.
set(parts_of_library libgcc)
set(parts_of_tools CLI11 nlohmann-json)
set(parts_of_simulator CLI11)
foreach(component library tools simulator)
  set(folder ${root}/share/doc/tavlynapi/linked/${component})
  file(READ ${folder}/NOTICE notice)
  file(READ ${folder}/sbom.cdx.json bill)
  string(JSON left LENGTH "${bill}" components)
  while(left)
    math(EXPR left "${left} - 1")
    string(JSON name GET "${bill}" components ${left} name)
    string(JSON version GET "${bill}" components ${left} version)
    string(FIND "${notice}" "== ${name} ${version}, " found)
    if(NOT version MATCHES "^[0-9]+\\." OR found EQUAL -1)
      message(FATAL_ERROR "${name} of ${component} has the version \"${version}\", and in NOTICE:\n${notice}")
    endif()
    list(REMOVE_ITEM parts_of_${component} ${name})
  endwhile()
  if(parts_of_${component} AND NOT (component STREQUAL "library" AND NOT RUNTIME))
    message(FATAL_ERROR "${folder} says nothing of ${parts_of_${component}}")
  endif()
endforeach()

run(python3 ${SOURCE}/scripts/check-hardening files --objdump ${OBJDUMP} --version ${VERSION} ${FORTIFIED}
  ${root}/bin ${root}/lib)

# A program that uses the package in one way: expect_version(COMMAND...) runs it.
function(expect_version)
  run(${ARGN})
  if(NOT output MATCHES "^tavlynapi ${VERSION}, connect [01]")
    message(FATAL_ERROR "${ARGN} said: ${output}")
  endif()
  message(STATUS "${ARGN}: ${output}")
endfunction()

run(${CMAKE_COMMAND} -S ${CONSUMER} -B ${WORK}/consumer -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN}
  -Dtavlynapi_DIR=${root}/lib/cmake/tavlynapi "-DCMAKE_C_FLAGS=${C_FLAGS}")
run(${CMAKE_COMMAND} --build ${WORK}/consumer)
if(WINDOWS)
  # Windows looks for a DLL beside the program.
  file(COPY ${root}/bin/tavlynapi.dll DESTINATION ${WORK}/consumer)
  expect_version(${EMULATOR} ${WORK}/consumer/consumer.exe)
else()
  expect_version(${WORK}/consumer/consumer)
  separate_arguments(C_FLAGS UNIX_COMMAND "${C_FLAGS}")
  separate_arguments(LINK_FLAGS UNIX_COMMAND "${LINK_FLAGS}")
  set(found_beside LD_LIBRARY_PATH=${root}/lib)
  run(${CC} ${C_FLAGS} -I${root}/include/tavlynapi ${CONSUMER}/consumer.c -L${root}/lib -ltavlynapi ${LINK_FLAGS} -o ${WORK}/plain)
  expect_version(${CMAKE_COMMAND} -E env ${found_beside} ${WORK}/plain)
  run(${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${root}/lib/pkgconfig pkg-config --cflags --libs tavlynapi)
  separate_arguments(flags UNIX_COMMAND "${output}")
  run(${CC} ${C_FLAGS} ${CONSUMER}/consumer.c ${flags} ${LINK_FLAGS} -o ${WORK}/by_pkg_config)
  expect_version(${CMAKE_COMMAND} -E env ${found_beside} ${WORK}/by_pkg_config)
endif()

# The CMake package gives Visual C++ its own import library, which mingw's linker understands too.
if(WINDOWS)
  run(${CMAKE_COMMAND} -S ${CONSUMER} -B ${WORK}/visual -G Ninja -DCMAKE_TOOLCHAIN_FILE=${TOOLCHAIN} -DMSVC=ON
    -Dtavlynapi_DIR=${root}/lib/cmake/tavlynapi)
  run(${CMAKE_COMMAND} --build ${WORK}/visual --verbose)
  if(NOT output MATCHES "tavlynapi\\.lib")
    message(FATAL_ERROR "the CMake package named another import library: ${output}")
  endif()
  file(COPY ${root}/bin/tavlynapi.dll DESTINATION ${WORK}/visual)
  expect_version(${EMULATOR} ${WORK}/visual/consumer.exe)
endif()

# A program as Visual C++ builds it, with its kind of import library, calling convention and linker.
if(WINDOWS)
  run(${CLANG} --target=x86_64-pc-windows-msvc -ffreestanding -Wall -Wextra -Werror -I${root}/include/tavlynapi
    -c ${CONSUMER}/visual_c.c -o ${WORK}/consumer/visual_c.obj)
  run(${LLD_LINK} /nologo /nodefaultlib /entry:Start /subsystem:console /out:${WORK}/consumer/visual_c.exe
    ${WORK}/consumer/visual_c.obj ${root}/lib/tavlynapi.lib)
  run(${EMULATOR} ${WORK}/consumer/visual_c.exe)
endif()

# The tools of the package find each other, the library and the stand-ins.
set(suffix "")
if(WINDOWS)
  set(suffix .exe)
endif()
run(${EMULATOR} ${root}/bin/tavlynsim${suffix} run --device plus:2 -- ${root}/bin/tavlynctl${suffix} list)
if(NOT output MATCHES "7A31:3BFA")
  message(FATAL_ERROR "tavlynctl said: ${output}")
endif()

# The library alone, in another project and without the tools' header libraries: static, then shared.
# One run checks this; those with a sanitizer's flags need not.
if(NOT WINDOWS AND C_FLAGS STREQUAL "")
  set(alone -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O0
    -DCMAKE_DISABLE_FIND_PACKAGE_CLI11=ON -DCMAKE_DISABLE_FIND_PACKAGE_nlohmann_json=ON)
  foreach(static ON OFF)
    run(${CMAKE_COMMAND} -S ${EMBEDDING} -B ${WORK}/embedding ${alone} -DTAVLYN_SOURCE=${SOURCE} -DTAVLYN_STATIC=${static})
    run(${CMAKE_COMMAND} --build ${WORK}/embedding)
    expect_version(${WORK}/embedding/consumer)
  endforeach()
  run(${CMAKE_COMMAND} -S ${SOURCE} -B ${WORK}/alone ${alone})
  if(NOT output MATCHES "tavlynctl and tavlynsim are left out")
    message(FATAL_ERROR "the configuration of the library alone said: ${output}")
  endif()
endif()
file(REMOVE_RECURSE ${WORK})
