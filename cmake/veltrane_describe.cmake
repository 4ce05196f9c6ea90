# veltrane_describe(GENERATOR target PROGRAM name FOLDER folder)
#   Runs a generator (a program whose main calls veltrane::RunDescribe) while building: man pages and completions of a
#   tool below a folder, as the system wants them below share/. Sets <name>_DOCUMENTS to the files, for a custom target.
# veltrane_describe_config(CONFIG target PROGRAM name FOLDER folder)
#   The same for the program that answers questions about the tool's configuration (its main calls
#   veltrane::RunConfigTool); adds to <name>_DOCUMENTS.
# veltrane_install_documents(PROGRAM name FOLDER folder [COMPONENT component])
#   Installs all of them.
# veltrane_tool_programs(tool TABLE table HEADER header VERSION version SUMMARY text [TITLE title] [FOLDER folder])
#   All of that for the target of a tool with a table of its own, without programs to write: makes the documents with
#   everything else, below folder (share/ in the build folder), and the program <tool>-config beside the tool, which is
#   left out where the package is built without it. The table is a veltrane::OwnTable, its namespaces in front, in that
#   header; the summary is one line without a full stop, the title stands in the head of the pages. Sets
#   <tool>_DOCUMENTS and installs nothing.
include(GNUInstallDirs)

# veltrane_add_document(program file COMMAND ... DEPENDS ...): one that add_custom_command makes.
function(veltrane_add_document program file)
    cmake_path(GET file PARENT_PATH folder)
    file(MAKE_DIRECTORY ${folder})
    add_custom_command(OUTPUT ${file} ${ARGN} VERBATIM)
    set_property(GLOBAL APPEND PROPERTY veltrane_documents_${program} ${file})
endfunction()

# Where the documents of a program stand below share/.
function(veltrane_name_documents program)
    set(man man/man1/${program}.1 PARENT_SCOPE)
    set(ini man/man5/${program}.ini.5 PARENT_SCOPE)
    set(bash bash-completion/completions/${program} PARENT_SCOPE)
    set(zsh zsh/vendor-completions/_${program} PARENT_SCOPE)
    set(fish fish/vendor_completions.d/${program}.fish PARENT_SCOPE)
endfunction()

macro(veltrane_tell_documents program)
    get_property(documents GLOBAL PROPERTY veltrane_documents_${program})
    set(${program}_DOCUMENTS ${documents} PARENT_SCOPE)
endmacro()

function(veltrane_describe)
    cmake_parse_arguments(PARSE_ARGV 0 arg "" "GENERATOR;PROGRAM;FOLDER" "")
    veltrane_name_documents(${arg_PROGRAM})
    foreach(kind man ini bash zsh fish)
        veltrane_add_document(${arg_PROGRAM} ${arg_FOLDER}/${${kind}}
            COMMAND ${arg_GENERATOR} ${kind} ${arg_FOLDER}/${${kind}} DEPENDS ${arg_GENERATOR})
    endforeach()
    veltrane_tell_documents(${arg_PROGRAM})
endfunction()

function(veltrane_describe_config)
    cmake_parse_arguments(PARSE_ARGV 0 arg "" "CONFIG;PROGRAM;FOLDER" "")
    veltrane_name_documents(${arg_CONFIG})
    foreach(kind man bash zsh fish)
        # It prints them. Where the build is for another processor, the emulator stands in front.
        veltrane_add_document(${arg_PROGRAM} ${arg_FOLDER}/${${kind}} COMMAND sh -c "\"$@\" >\"$0\""
            ${arg_FOLDER}/${${kind}} ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:${arg_CONFIG}> --generate ${kind}
            DEPENDS ${arg_CONFIG})
    endforeach()
    veltrane_tell_documents(${arg_PROGRAM})
endfunction()

function(veltrane_install_documents)
    cmake_parse_arguments(PARSE_ARGV 0 arg "" "PROGRAM;FOLDER;COMPONENT" "")
    if(NOT arg_COMPONENT)
        set(arg_COMPONENT Unspecified)
    endif()
    get_property(documents GLOBAL PROPERTY veltrane_documents_${arg_PROGRAM})
    foreach(file ${documents})
        cmake_path(GET file PARENT_PATH below)
        cmake_path(RELATIVE_PATH below BASE_DIRECTORY ${arg_FOLDER})
        install(FILES ${file} DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/${below} COMPONENT ${arg_COMPONENT})
    endforeach()
endfunction()

# A program of a tool whose main returns a call, beside the tool and with what the tool's header needs.
function(veltrane_add_program target tool table header include call)
    file(CONFIGURE OUTPUT ${CMAKE_CURRENT_BINARY_DIR}/${target}.cpp @ONLY CONTENT [=[
#include "@header@"
#include "@include@"
#include "veltrane/options/xowntable.h"

static_assert(veltrane::FitsLibrary<@table@>());

int main(int argc, char** argv) {
    const veltrane::OwnOptions registered{@table@};
    return veltrane::@call@;
}
]=])
    add_executable(${target} ${CMAKE_CURRENT_BINARY_DIR}/${target}.cpp)
    target_include_directories(${target} PRIVATE $<TARGET_PROPERTY:${tool},INCLUDE_DIRECTORIES>)
    target_link_libraries(${target} PRIVATE ${ARGN})
endfunction()

function(veltrane_tool_programs tool)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "TABLE;HEADER;VERSION;SUMMARY;TITLE;FOLDER" "")
    foreach(part TABLE HEADER VERSION SUMMARY)
        if(NOT arg_${part})
            message(FATAL_ERROR "veltrane_tool_programs(${tool}): ${part} is missing")
        endif()
    endforeach()
    if(NOT arg_TITLE)
        string(SUBSTRING ${tool} 0 1 first)
        string(SUBSTRING ${tool} 1 -1 rest)
        string(TOUPPER ${first} first)
        set(arg_TITLE ${first}${rest})
    endif()
    if(NOT arg_FOLDER)
        set(arg_FOLDER ${CMAKE_CURRENT_BINARY_DIR}/share)
    endif()
    cmake_path(ABSOLUTE_PATH arg_HEADER)
    set(version "R\"veltrane(${arg_VERSION})veltrane\"")
    set(texts "R\"veltrane(${arg_TITLE})veltrane\", ${version}, R\"veltrane(${arg_SUMMARY})veltrane\"")
    veltrane_add_program(${tool}_pages ${tool} ${arg_TABLE} ${arg_HEADER} describe.h
        "RunDescribe(argc, argv, {\"${tool}\", ${texts}})" veltrane::describe)
    veltrane_describe(GENERATOR ${tool}_pages PROGRAM ${tool} FOLDER ${arg_FOLDER})
    if(TARGET veltrane::config_tool)
        veltrane_add_program(${tool}-config ${tool} ${arg_TABLE} ${arg_HEADER} veltrane/config_tool.h
            "RunConfigTool(argc, argv, {\"${tool}\", ${version}})" veltrane::config_tool veltrane::describe)
        get_target_property(beside ${tool} RUNTIME_OUTPUT_DIRECTORY)
        if(beside)
            set_target_properties(${tool}-config PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${beside})
        endif()
        veltrane_describe_config(CONFIG ${tool}-config PROGRAM ${tool} FOLDER ${arg_FOLDER})
    endif()
    get_property(documents GLOBAL PROPERTY veltrane_documents_${tool})
    add_custom_target(${tool}_documents ALL DEPENDS ${documents})
    veltrane_tell_documents(${tool})
endfunction()
