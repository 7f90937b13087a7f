# The typeprint(1) manual page, made at build time by help2man from the command's own --help and
# --version, each command's --help (man/man_sections.sh) and the sections in man/typeprint.h2m.
# Without help2man the build goes on without it.
find_program(TYPEPRINT_HELP2MAN help2man)
if(TYPEPRINT_HELP2MAN)
  set(man_page ${PROJECT_BINARY_DIR}/typeprint.1)
  set(man_sections ${PROJECT_BINARY_DIR}/typeprint.h2m)
  add_custom_command(OUTPUT ${man_page}
    COMMAND ${PROJECT_SOURCE_DIR}/man/man_sections.sh $<TARGET_FILE:typeprint_tool>
            ${PROJECT_SOURCE_DIR}/man/typeprint.h2m ${man_sections}
    COMMAND ${TYPEPRINT_HELP2MAN} --no-info --section=1 --name=${PROJECT_DESCRIPTION}
            --include=${man_sections} --output=${man_page} $<TARGET_FILE:typeprint_tool>
    DEPENDS typeprint_tool ${PROJECT_SOURCE_DIR}/man/typeprint.h2m ${PROJECT_SOURCE_DIR}/man/man_sections.sh
    COMMENT "Writing the typeprint(1) manual page"
    VERBATIM)
  add_custom_target(typeprint_man_page ALL DEPENDS ${man_page})
  install(FILES ${man_page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
else()
  message(STATUS "help2man not found: the typeprint(1) manual page is not built")
endif()
