# Builds against musl, the C library of Alpine. Debian has no C++ runtime for it, so programs get that of glibc,
# statically, with the few names that musl lacks (cmake/musl/runtime.cpp). This is for tests; what is handed out for
# Alpine is built there.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER gcc)
set(CMAKE_CXX_COMPILER g++)

# The kernel's headers, which are for every C library, without glibc's beside them.
set(made ${CMAKE_BINARY_DIR}/musl)
file(MAKE_DIRECTORY ${made})
foreach(header linux asm-generic x86_64-linux-gnu/asm hidapi)
  get_filename_component(name ${header} NAME)
  file(CREATE_LINK /usr/include/${header} ${made}/${name} SYMBOLIC)
endforeach()

execute_process(COMMAND g++ -dumpversion OUTPUT_VARIABLE version OUTPUT_STRIP_TRAILING_WHITESPACE)
set(c_headers "-nostdinc -isystem /usr/include/x86_64-linux-musl -isystem /usr/lib/gcc/x86_64-linux-gnu/${version}/include -isystem ${made}")
set(headers "-nostdinc++")
foreach(folder ${CMAKE_CURRENT_LIST_DIR}/musl /usr/include/c++/${version} /usr/include/x86_64-linux-gnu/c++/${version})
  string(APPEND headers " -isystem ${folder}")
endforeach()
string(APPEND headers " ${c_headers}")
set(CMAKE_C_FLAGS_INIT "${c_headers}")
set(CMAKE_CXX_FLAGS_INIT "${headers}")

set(runtime ${made}/runtime.o)
if(NOT EXISTS ${runtime})
  separate_arguments(flags UNIX_COMMAND "${headers}")
  execute_process(COMMAND g++ ${flags} -std=c++20 -O1 -fPIC -c ${CMAKE_CURRENT_LIST_DIR}/musl/runtime.cpp -o ${runtime}
    COMMAND_ERROR_IS_FATAL ANY)
endif()
set(CMAKE_CXX_STANDARD_LIBRARIES ${runtime})
# These specs do not ask for the table in which exceptions find their handlers, as those of g++ do.
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT
    "-specs=/usr/lib/x86_64-linux-musl/musl-gcc.specs -static-libstdc++ -static-libgcc -Wl,--eh-frame-hdr")
endforeach()

set(CMAKE_FIND_ROOT_PATH /usr/lib/x86_64-linux-musl)
foreach(kind LIBRARY INCLUDE PACKAGE)
  set(CMAKE_FIND_ROOT_PATH_MODE_${kind} ONLY)
endforeach()
