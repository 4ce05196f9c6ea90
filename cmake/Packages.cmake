# Debian packages, one for each component, and one with the debug symbols where the build has them: cpack in the build
# folder of the preset "release".
set(VELTRANE_MAINTAINER "Veltrane maintainers <maintainers@veltrane.invalid>" CACHE STRING "Maintainer of the packages")
set(VELTRANE_COPYRIGHT "2026 the authors of Veltrane" CACHE STRING "Year and holder of the copyright")
set(VELTRANE_LICENSE "No license has been named." CACHE STRING "Text of the license")
mark_as_advanced(VELTRANE_MAINTAINER VELTRANE_COPYRIGHT VELTRANE_LICENSE)
find_program(VELTRANE_SHLIBDEPS dpkg-shlibdeps)
mark_as_advanced(VELTRANE_SHLIBDEPS)

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME veltrane)
set(CPACK_PACKAGE_CONTACT ${VELTRANE_MAINTAINER})
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "options, configuration, log and errors of schema tools")
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime development)
if(TARGET veltrane)
    list(APPEND CPACK_COMPONENTS_ALL tool)
endif()
set(VELTRANE_DEB_RUNTIME libveltrane-base${PROJECT_VERSION_MAJOR})

# Files for the packages only; cmake/debian/finish.cmake adds changelog and copyright to them.
set(VELTRANE_DEB_FOLDER ${CMAKE_CURRENT_BINARY_DIR}/debian)
string(TIMESTAMP VELTRANE_DEB_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
file(STRINGS cmake/exported-symbols.txt symbols)
list(TRANSFORM symbols APPEND "@Base 1.0.0")
list(JOIN symbols "\n " VELTRANE_DEB_SYMBOLS)
foreach(file copyright changelog symbols)
    configure_file(cmake/debian/${file}.in ${VELTRANE_DEB_FOLDER}/${file} @ONLY)
endforeach()
file(CONFIGURE OUTPUT ${VELTRANE_DEB_FOLDER}/finish.cmake @ONLY
    CONTENT "set(VELTRANE_DEB_FOLDER \"@VELTRANE_DEB_FOLDER@\")\ninclude(\"@PROJECT_SOURCE_DIR@/cmake/debian/finish.cmake\")\n")
set(CPACK_PRE_BUILD_SCRIPTS ${VELTRANE_DEB_FOLDER}/finish.cmake)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${VELTRANE_DEB_RUNTIME})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "This package holds the shared library.")
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
# The trigger runs ldconfig. cpack would add scripts that do so too, but not if scripts are named, even missing ones.
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_SOURCE_DIR}/cmake/debian/triggers ${VELTRANE_DEB_FOLDER}/symbols
    ${VELTRANE_DEB_FOLDER}/none/postinst ${VELTRANE_DEB_FOLDER}/none/postrm)

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libveltrane-base-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${VELTRANE_DEB_RUNTIME} (= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "This package holds headers, documents and build files.")

set(CPACK_DEBIAN_TOOL_PACKAGE_NAME veltrane)
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION database)
set(CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS "${VELTRANE_DEB_RUNTIME} (>= ${PROJECT_VERSION})")
set(CPACK_COMPONENT_TOOL_DESCRIPTION "This package holds the sample tool and a sample configuration.")

# Debug symbols go to packages of their own where the compiler was asked for any.
string(TOUPPER "${CMAKE_BUILD_TYPE}" type)
if(CMAKE_CXX_FLAGS_${type} MATCHES "-g")
    set(CPACK_DEBIAN_RUNTIME_DEBUGINFO_PACKAGE ON)
    set(CPACK_DEBIAN_TOOL_DEBUGINFO_PACKAGE ON)
    set(CPACK_POST_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/debugsymbols.cmake)
else()
    set(CPACK_STRIP_FILES ON)
endif()

# What the compiled files depend on: found by the package tools, or else what every build needs.
if(VELTRANE_SHLIBDEPS)
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)
    set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${CMAKE_CURRENT_BINARY_DIR})
else()
    set(CPACK_DEBIAN_RUNTIME_PACKAGE_DEPENDS "libc6, libgcc-s1, libstdc++6")
    string(APPEND CPACK_DEBIAN_TOOL_PACKAGE_DEPENDS ", libc6, libgcc-s1, libstdc++6")
endif()
include(CPack)
