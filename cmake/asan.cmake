# AddressSanitizer and UndefinedBehaviorSanitizer, by clang, which takes half as long as g++. The sanitizers are a library
# of their own, as g++ has them, because programs without them load what is built. Calls through pointers of another type
# are not found, as by g++: that is how the system's libraries are called.
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(flags -fsanitize=address,undefined -fno-sanitize=function -fno-sanitize-recover=all -shared-libasan
  -fno-omit-frame-pointer)
# Clang does not define it, and the sources ask for it.
list(APPEND flags -D__SANITIZE_ADDRESS__)
list(JOIN flags " " flags)
set(CMAKE_C_FLAGS_INIT ${flags})
set(CMAKE_CXX_FLAGS_INIT ${flags})

execute_process(COMMAND clang++ -print-runtime-dir OUTPUT_VARIABLE folder OUTPUT_STRIP_TRAILING_WHITESPACE)
foreach(kind EXE SHARED MODULE)
  set(CMAKE_${kind}_LINKER_FLAGS_INIT -Wl,-rpath,${folder})
endforeach()
