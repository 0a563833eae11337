# Run by cpack before each kind of package, on the tree that goes into it.
function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

set(tree ${CPACK_TEMPORARY_DIRECTORY})
function(write_changelog kind file)
    run(${CMAKE_CURRENT_LIST_DIR}/changelog ${kind} ${CPACK_PACKAGE_CONTACT}
        INPUT_FILE ${CMAKE_CURRENT_LIST_DIR}/../CHANGELOG.md OUTPUT_FILE ${file})
endfunction()
if(CPACK_GENERATOR STREQUAL "DEB")
    set(changelog ${tree}/usr/share/doc/zelfhome/changelog.Debian)
    write_changelog(deb ${changelog})
    run(gzip -9n ${changelog})
    file(REMOVE ${tree}/usr/share/doc/zelfhome/CHANGELOG.md)
    configure_file(${CMAKE_CURRENT_LIST_DIR}/zelfhome.lintian-overrides
                   ${tree}/usr/share/lintian/overrides/zelfhome COPYONLY)
else()
    write_changelog(rpm ${CPACK_RPM_CHANGELOG_FILE})
    file(GLOB debian_folder ${tree}/usr/share/zsh/vendor-completions)
    if(debian_folder)
        file(RENAME ${debian_folder} ${tree}/usr/share/zsh/site-functions)
    endif()
endif()
# The name of the compiler is left in by the strip to come.
run(objcopy --remove-section=.comment ${tree}/opt/zelf/bin/zelfhome)
# Whatever the umask of the caller.
run(chmod -R u=rwX,go=rX ${tree})
# rpm makes younger files as old as that, but leaves older ones.
if(DEFINED ENV{SOURCE_DATE_EPOCH})
    run(find ${tree} -exec touch --no-dereference --date=@$ENV{SOURCE_DATE_EPOCH} {} +)
endif()
