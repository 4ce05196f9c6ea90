# One interface target carries what every target of this project is compiled with; nothing of it reaches users.
add_library(veltrane_options INTERFACE)

target_compile_options(veltrane_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wformat=2 -Wformat-nonliteral $<$<BOOL:${PROJECT_IS_TOP_LEVEL}>:-Werror>
    $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>  # unique symbols would keep the library loaded forever
    -fvisibility=hidden -fvisibility-inlines-hidden -fstack-protector-strong -ffile-prefix-map=${PROJECT_SOURCE_DIR}/=)

if(VELTRANE_SANITIZE)
    target_compile_options(veltrane_options INTERFACE
        -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer
        $<$<CXX_COMPILER_ID:GNU>:-Wno-maybe-uninitialized>)  # g++ sees ghosts of it in the standard library then
    target_link_options(veltrane_options INTERFACE -fsanitize=address,undefined)
elseif(NOT VELTRANE_BUILD_FUZZ)
    target_compile_options(veltrane_options INTERFACE $<$<CONFIG:Release>:-U_FORTIFY_SOURCE$<SEMICOLON>-D_FORTIFY_SOURCE=2>)
endif()

if(VELTRANE_COVERAGE)
    target_compile_options(veltrane_options INTERFACE --coverage -fprofile-update=atomic)
    target_link_options(veltrane_options INTERFACE --coverage)
endif()

target_link_options(veltrane_options INTERFACE -Wl,-z,relro -Wl,-z,now -Wl,-z,noexecstack)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)
