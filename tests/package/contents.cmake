# Looks at what was installed below PREFIX: what must be there, and internal headers, which must not.
string(REGEX MATCH "^[0-9]+\\.[0-9]+" soversion ${VERSION})
foreach(file IN ITEMS
        include/ketra/ketra.h include/ketra/export.h include/ketra/api/ketra.h
        include/ketra/thermo/input/ConfigFile.h
        ${LIBDIR}/libketra.so ${LIBDIR}/libketra.so.${soversion} ${LIBDIR}/libketra.so.${VERSION}
        ${LIBDIR}/pkgconfig/ketra.pc ${LIBDIR}/cmake/ketra/ketraConfig.cmake
        share/ketra/resources/thermo.inp share/ketra/resources/properties.inp
        share/ketra/resources/trans.inp
        bin/ketra)
    if(NOT EXISTS ${PREFIX}/${file})
        message(SEND_ERROR "not installed: ${file}")
    endif()
endforeach()

file(GLOB_RECURSE headers RELATIVE ${PREFIX}/include ${PREFIX}/include/*)
foreach(header IN LISTS headers)
    if(header MATCHES "/detail/|^ketra/report/")
        message(SEND_ERROR "an internal header is installed: ${header}")
    endif()
endforeach()
