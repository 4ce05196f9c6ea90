# veltrane_describe(GENERATOR target PROGRAM name FOLDER folder)
#   Runs a generator (a program whose main calls veltrane::RunDescribe) while building: man pages and completions of a
#   tool below a folder, as the system wants them below share/. Sets <name>_DOCUMENTS to the files, for a custom target.
# veltrane_install_documents(PROGRAM name FOLDER folder [COMPONENT component])
#   Installs them.
include(GNUInstallDirs)

function(veltrane_describe)
    cmake_parse_arguments(PARSE_ARGV 0 arg "" "GENERATOR;PROGRAM;FOLDER" "")
    set(documents "")
    foreach(document "man|man/man1/${arg_PROGRAM}.1" "ini|man/man5/${arg_PROGRAM}.ini.5"
            "bash|bash-completion/completions/${arg_PROGRAM}" "zsh|zsh/vendor-completions/_${arg_PROGRAM}"
            "fish|fish/vendor_completions.d/${arg_PROGRAM}.fish")
        string(REPLACE "|" ";" parts ${document})
        list(GET parts 0 kind)
        list(GET parts 1 name)
        cmake_path(GET name PARENT_PATH below)
        file(MAKE_DIRECTORY ${arg_FOLDER}/${below})
        add_custom_command(OUTPUT ${arg_FOLDER}/${name} COMMAND ${arg_GENERATOR} ${kind} ${arg_FOLDER}/${name}
            DEPENDS ${arg_GENERATOR} VERBATIM)
        list(APPEND documents ${arg_FOLDER}/${name})
    endforeach()
    set(${arg_PROGRAM}_DOCUMENTS ${documents} PARENT_SCOPE)
endfunction()

function(veltrane_install_documents)
    cmake_parse_arguments(PARSE_ARGV 0 arg "" "PROGRAM;FOLDER;COMPONENT" "")
    if(NOT arg_COMPONENT)
        set(arg_COMPONENT Unspecified)
    endif()
    foreach(name "man/man1/${arg_PROGRAM}.1" "man/man5/${arg_PROGRAM}.ini.5" "bash-completion/completions/${arg_PROGRAM}"
            "zsh/vendor-completions/_${arg_PROGRAM}" "fish/vendor_completions.d/${arg_PROGRAM}.fish")
        cmake_path(GET name PARENT_PATH below)
        install(FILES ${arg_FOLDER}/${name} DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/${below} COMPONENT ${arg_COMPONENT})
    endforeach()
endfunction()
