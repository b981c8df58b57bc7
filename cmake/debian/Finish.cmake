# Run by CPack when the components are installed into a folder each, before they are packed: does what Debian asks for
# beyond an installation.
foreach(pair IN LISTS CPACK_LVP_PACKAGES)
    string(REPLACE "=" ";" pair ${pair})
    list(GET pair 0 component)
    list(GET pair 1 package)
    set(root ${CPACK_TEMPORARY_DIRECTORY}/${component})
    set(documents ${root}/usr/share/doc/${package})

    # Every package says who may do what with it, and what has changed.
    file(COPY ${CPACK_LVP_COPYRIGHT} DESTINATION ${documents})
    configure_file(${CPACK_LVP_CHANGELOG} ${documents}/changelog COPYONLY)
    configure_file(${CPACK_LVP_DEBIAN_CHANGELOG} ${documents}/changelog.Debian COPYONLY)
    execute_process(COMMAND gzip --best --no-name --force ${documents}/changelog ${documents}/changelog.Debian
        COMMAND_ERROR_IS_FATAL ANY)

    # What of lintian's warnings does not apply, and why.
    if(EXISTS ${CPACK_LVP_OVERRIDES}/${package})
        file(COPY ${CPACK_LVP_OVERRIDES}/${package} DESTINATION ${root}/usr/share/lintian/overrides)
    endif()

    # The text of the licence is the system's, and manuals are compressed.
    file(GLOB licences ${root}/usr/share/doc/*/LICENSE)
    foreach(licence IN LISTS licences)
        file(REMOVE ${licence})
        file(CREATE_LINK ../../common-licenses/Apache-2.0 ${licence} SYMBOLIC)
    endforeach()
    file(GLOB manuals ${root}/usr/share/man/man1/*.1)
    foreach(manual IN LISTS manuals)
        execute_process(COMMAND gzip --best --no-name --force ${manual} COMMAND_ERROR_IS_FATAL ANY)
    endforeach()

    # Debian's zsh looks for what packages bring in a folder of its own.
    if(EXISTS ${root}/usr/share/zsh/site-functions)
        file(RENAME ${root}/usr/share/zsh/site-functions ${root}/usr/share/zsh/vendor-completions)
    endif()

    # Where the system looks for libraries anyway, a program does not name the place.
    file(GLOB_RECURSE programs ${root}/usr/bin/* ${root}/usr/lib/*.so)
    foreach(program IN LISTS programs)
        file(RPATH_REMOVE FILE ${program})
    endforeach()
endforeach()
