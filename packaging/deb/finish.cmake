# What Debian's policy wants in a package beyond what `cmake --install` puts down. CPack runs this over the staged files.
function(compress file)
    execute_process(COMMAND gzip --best --no-name ${file} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

# The newest version of glibc's symbols that a file below the folder asks for: "2.34".
function(glibc_needed folder result)
    file(GLOB_RECURSE files ${folder}/*)
    set(versions 2.4)
    foreach(file IN LISTS files)
        execute_process(COMMAND ${CPACK_READELF_EXECUTABLE} --version-info ${file} OUTPUT_VARIABLE text ERROR_QUIET)
        string(REGEX MATCHALL "GLIBC_2[.][0-9]+" found "${text}")
        list(APPEND versions ${found})
    endforeach()
    list(TRANSFORM versions REPLACE GLIBC_ "")
    list(SORT versions COMPARE NATURAL ORDER DESCENDING)
    list(GET versions 0 newest)
    set(${result} ${newest} PARENT_SCOPE)
endfunction()

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
    string(TOUPPER ${component} upper)
    set(package ${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
    set(root ${CPACK_TEMPORARY_DIRECTORY}/${component})

    set(documents ${root}/usr/share/doc/${package})
    file(COPY ${CPACK_VX63_DEB}/copyright ${CPACK_VX63_DEB}/changelog DESTINATION ${documents}
        FILE_PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
    compress(${documents}/changelog)
    file(GLOB_RECURSE pages ${root}/usr/share/man/*)
    foreach(page IN LISTS pages)
        compress(${page})
    endforeach()

    set(overrides ${CPACK_VX63_DEB}/${package}.lintian-overrides)
    if(EXISTS ${overrides})
        file(MAKE_DIRECTORY ${root}/usr/share/lintian/overrides)
        file(COPY_FILE ${overrides} ${root}/usr/share/lintian/overrides/${package})
    endif()

    # Where dpkg-shlibdeps looks first; CPack removes it where it calls that.
    if(CPACK_VX63_SHLIBS AND component MATCHES "^(library|tools|vmeter)$")
        glibc_needed(${root} glibc)
        configure_file(${CPACK_VX63_SHLIBS} ${root}/debian/shlibs.local @ONLY)
    endif()
endforeach()
