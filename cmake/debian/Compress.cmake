# Debian wants manual pages and changelogs compressed.
set(folder ${CPACK_TEMPORARY_INSTALL_DIRECTORY})
file(GLOB_RECURSE texts ${folder}/vexxml.1 ${folder}/changelog*)
execute_process(COMMAND gzip --best --no-name ${texts} COMMAND_ERROR_IS_FATAL ANY)
