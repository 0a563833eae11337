# Run by cpack ahead of each kind of package, on the tree that goes into it.
function(run)
    execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

set(tree ${CPACK_TEMPORARY_DIRECTORY})
if(CPACK_GENERATOR STREQUAL "DEB")
    configure_file(${CMAKE_CURRENT_LIST_DIR}/zelfhome.lintian-overrides
                   ${tree}/usr/share/lintian/overrides/zelfhome COPYONLY)
endif()
# The name of the compiler is left in by the strip to come.
run(objcopy --remove-section=.comment ${tree}/opt/zelf/bin/zelfhome)
# Whatever the umask of the caller.
run(chmod -R u=rwX,go=rX ${tree})
