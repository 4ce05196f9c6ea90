# Three components: runtime (the shared library), development (headers, documents, CMake package, pkg-config file, the
# library when it is a static one) and tool (the host). No installed file contains the prefix, so the tree can be moved.
include(CMakePackageConfigHelpers)

set(VELTRANE_PACKAGE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/veltrane_base)
file(RELATIVE_PATH VELTRANE_LIBDIR_FROM_BINDIR ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
file(RELATIVE_PATH VELTRANE_PREFIX_FROM_PKGCONFIG ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})

install(TARGETS veltrane_base EXPORT veltrane_base-targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)

# Neither installed nor documented: detail/ is private to its folder, internal/ to the library.
install(DIRECTORY veltrane/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/veltrane COMPONENT development
    FILES_MATCHING PATTERN "*.h" PATTERN "detail" EXCLUDE PATTERN "internal" EXCLUDE)
install(FILES README.md CHANGELOG.md DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development)
install(DIRECTORY docs DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT development PATTERN "*.in" EXCLUDE)
install(DIRECTORY examples/owntool examples/origin DESTINATION ${CMAKE_INSTALL_DOCDIR}/examples COMPONENT development)

install(EXPORT veltrane_base-targets NAMESPACE veltrane:: DESTINATION ${VELTRANE_PACKAGE_DIR} COMPONENT development)
configure_package_config_file(cmake/veltrane_base-config.cmake.in veltrane_base-config.cmake
    INSTALL_DESTINATION ${VELTRANE_PACKAGE_DIR} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(veltrane_base-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/veltrane_base-config.cmake
    ${CMAKE_CURRENT_BINARY_DIR}/veltrane_base-config-version.cmake cmake/veltrane_describe.cmake
    DESTINATION ${VELTRANE_PACKAGE_DIR} COMPONENT development)

configure_file(cmake/veltrane_base.pc.in veltrane_base.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/veltrane_base.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)

if(TARGET veltrane_config_tool)
    install(TARGETS veltrane_config_tool EXPORT veltrane_base-targets
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
    install(FILES companion/include/veltrane/config_tool.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/veltrane COMPONENT development)
endif()
foreach(program veltrane veltrane-config)
    if(TARGET ${program})
        # Linked a second time, for its place below the prefix: if CMake had to change the run path on installation, it
        # would pad the one in the build folder with an empty element, and the loader would search the current folder.
        add_executable(${program}_installed $<TARGET_OBJECTS:${program}>)
        target_link_libraries(${program}_installed PRIVATE $<TARGET_PROPERTY:${program},LINK_LIBRARIES>)
        set_target_properties(${program}_installed PROPERTIES OUTPUT_NAME ${program}
            RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/installed
            BUILD_WITH_INSTALL_RPATH ON INSTALL_RPATH "$ORIGIN/${VELTRANE_LIBDIR_FROM_BINDIR}")
        install(TARGETS ${program}_installed RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tool)
    endif()
endforeach()
if(TARGET veltrane)
    install(DIRECTORY examples/config DESTINATION ${CMAKE_INSTALL_DATADIR}/veltrane COMPONENT tool)
endif()
