# Writes the files in RESOURCES anew into FOLDER with PROGRAM and compares them.
file(REMOVE_RECURSE ${FOLDER})
file(MAKE_DIRECTORY ${FOLDER})
execute_process(COMMAND ${PROGRAM} ${RESOURCES}/thermo.inp ${RESOURCES}/properties.inp
                        ${RESOURCES}/trans.inp ${FOLDER}
                COMMAND_ERROR_IS_FATAL ANY)
foreach(file IN ITEMS thermo.inp properties.inp trans.inp)
    execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${RESOURCES}/${file} ${FOLDER}/${file}
                    COMMAND_ERROR_IS_FATAL ANY)
endforeach()
