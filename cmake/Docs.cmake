# Target docs: the API reference of the installed headers in docs/html of the build folder. A warning is an error.
find_package(Doxygen QUIET)
if(DOXYGEN_FOUND)
    configure_file(docs/Doxyfile.in Doxyfile @ONLY)
    add_custom_target(docs COMMAND Doxygen::doxygen ${CMAKE_CURRENT_BINARY_DIR}/Doxyfile VERBATIM
        COMMENT "Writing the API reference to ${CMAKE_CURRENT_BINARY_DIR}/docs/html")
endif()
