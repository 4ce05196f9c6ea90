# Options of every target of this project; none of them is passed on to users. Those that may be a matter of taste come
# before the user's own CMAKE_CXX_FLAGS, which can override them.
set(VELTRANE_CXX_FLAGS "-Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wformat=2 -Wformat-nonliteral -fstack-protector-strong")
string(PREPEND CMAKE_CXX_FLAGS "${VELTRANE_CXX_FLAGS} ")

add_library(veltrane_options INTERFACE)
target_compile_options(veltrane_options INTERFACE
    $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>  # unique symbols would keep the library loaded forever
    -fvisibility=hidden -fvisibility-inlines-hidden -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=)

if(VELTRANE_SANITIZE)
    target_compile_options(veltrane_options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
        $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)  # g++ then gives false warnings in the standard library
    target_link_options(veltrane_options INTERFACE -fsanitize=address,undefined)
elseif(NOT VELTRANE_BUILD_FUZZ AND NOT CMAKE_CXX_FLAGS MATCHES "_FORTIFY_SOURCE|-fsanitize")
    target_compile_options(veltrane_options INTERFACE
        $<$<AND:$<CONFIG:Release,RelWithDebInfo>,$<NOT:$<BOOL:$<TARGET_PROPERTY:VELTRANE_UNOPTIMIZED>>>>:-U_FORTIFY_SOURCE$<SEMICOLON>-D_FORTIFY_SOURCE=2>)
endif()

if(VELTRANE_COVERAGE)
    target_compile_options(veltrane_options INTERFACE --coverage -fprofile-update=atomic)
    target_link_options(veltrane_options INTERFACE --coverage)
endif()

target_link_options(veltrane_options INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
