# Texts that become part of a program. As a script (cmake -DOUT=... -DFILES=... -P embed.cmake) this file writes the
# source that holds them.

if(CMAKE_SCRIPT_MODE_FILE)
    set(entries)
    foreach(file IN LISTS FILES)
        get_filename_component(name ${file} NAME)
        file(READ ${file} text)
        string(APPEND entries "    {\"${name}\", R\"part(${text})part\"},\n")
    endforeach()
    file(WRITE ${OUT} "#include \"page/parts.h\"\n\nnamespace lab {\n\n"
        "const std::map<std::string_view, std::string_view> parts{\n${entries}};\n\n}  // namespace lab\n")
    return()
endif()

# embed_texts(<target> <file> ...): the files become part of the target; lab::part (lab/page/parts.h) finds them by
# their names without folder.
function(embed_texts target)
    set(out ${CMAKE_CURRENT_BINARY_DIR}/${target}_parts.cpp)
    add_custom_command(OUTPUT ${out}
        COMMAND ${CMAKE_COMMAND} "-DOUT=${out}" "-DFILES=${ARGN}" -P ${CMAKE_SOURCE_DIR}/cmake/embed.cmake
        DEPENDS ${ARGN} ${CMAKE_SOURCE_DIR}/cmake/embed.cmake
        COMMENT "Embedding into ${target}"
        VERBATIM)
    target_sources(${target} PRIVATE ${out})
endfunction()
