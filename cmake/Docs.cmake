# Target docs: the API reference of the installed headers in docs/html of the build folder. A warning is an error.
find_package(Doxygen QUIET)
if(DOXYGEN_FOUND)
    list(TRANSFORM VELTRANE_INTERNAL_HEADERS REPLACE "(.+)" "*/\\1.h" OUTPUT_VARIABLE excluded)
    list(JOIN excluded " " VELTRANE_UNDOCUMENTED)
    configure_file(docs/Doxyfile.in Doxyfile @ONLY)
    add_custom_target(docs COMMAND Doxygen::doxygen ${CMAKE_CURRENT_BINARY_DIR}/Doxyfile VERBATIM
        COMMENT "Writing the API reference to ${CMAKE_CURRENT_BINARY_DIR}/docs/html")
endif()
