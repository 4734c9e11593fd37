# Windows x86-64 from Linux: mingw-w64, run under wine. With the thread model of Windows the runtime takes its locks
# without memory, so that the library can throw when there is none left; winpthreads allocates each lock.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-win32)  # GoogleTest's project asks for one
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-win32)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)
set(CMAKE_CROSSCOMPILING_EMULATOR wine)
set(ZLIB_USE_STATIC_LIBS ON)
set(ZLIB_LIBRARY /usr/x86_64-w64-mingw32/lib/libz.a)
set(ZLIB_INCLUDE_DIR /usr/x86_64-w64-mingw32/include)
