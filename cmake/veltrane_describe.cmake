# veltrane_describe(GENERATOR target PROGRAM name FOLDER folder)
#   Runs a generator (a program whose main calls veltrane::RunDescribe) during the build: it writes man pages and
#   completions of a tool below a folder, laid out as below share/. Sets <name>_DOCUMENTS to the files, for a custom target.
# veltrane_describe_config(CONFIG target PROGRAM name FOLDER folder)
#   The same for the program that answers questions about the tool's configuration (its main calls
#   veltrane::RunConfigTool); adds its files to <name>_DOCUMENTS.
# veltrane_install_documents(PROGRAM name FOLDER folder [COMPONENT component])
#   Installs all these files.
# veltrane_tool_programs(tool TABLE table HEADER header VERSION version SUMMARY text [TITLE title] [FOLDER folder])
#   Does all of that for the target of a tool with its own table, without programs to write: the build makes the
#   documents below folder (default: share/ in the build folder) and the program <tool>-config beside the tool, unless
#   this package was built without it. TABLE is a veltrane::OwnTable with its namespaces, declared in HEADER; SUMMARY is
#   one line without a full stop; TITLE is shown at the top of the pages. Sets <tool>_DOCUMENTS and installs nothing.
include(GNUInstallDirs)

# veltrane_add_document(program file COMMAND ... DEPENDS ...): a document that add_custom_command makes.
function(veltrane_add_document program file)
    cmake_path(GET file PARENT_PATH folder)
    file(MAKE_DIRECTORY ${folder})
    add_custom_command(OUTPUT ${file} ${ARGN} VERBATIM)
    set_property(GLOBAL APPEND PROPERTY veltrane_documents_${program} ${file})
endfunction()

# The places of a program's documents below share/.
function(veltrane_name_documents program)
    set(man man/man1/${program}.1 PARENT_SCOPE)
    set(ini man/man5/${program}.ini.5 PARENT_SCOPE)
    set(bash bash-completion/completions/${program} PARENT_SCOPE)
    set(zsh zsh/vendor-completions/_${program} PARENT_SCOPE)
    set(fish fish/vendor_completions.d/${program}.fish PARENT_SCOPE)
endfunction()

macro(veltrane_set_documents program)
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
    veltrane_set_documents(${arg_PROGRAM})
endfunction()

function(veltrane_describe_config)
    cmake_parse_arguments(PARSE_ARGV 0 arg "" "CONFIG;PROGRAM;FOLDER" "")
    veltrane_name_documents(${arg_CONFIG})
    foreach(kind man bash zsh fish)
        # The program prints them; in a cross build the emulator runs it.
        veltrane_add_document(${arg_PROGRAM} ${arg_FOLDER}/${${kind}} COMMAND sh -c "\"$@\" >\"$0\""
            ${arg_FOLDER}/${${kind}} ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:${arg_CONFIG}> --generate ${kind}
            DEPENDS ${arg_CONFIG})
    endforeach()
    veltrane_set_documents(${arg_PROGRAM})
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

# A program whose main returns a call, compiled with the include folders of the tool.
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
    veltrane_set_documents(${tool})
endfunction()
