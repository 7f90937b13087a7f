# The typeprint(1) manual page, made at build time by help2man from the command's own --help and
# --version plus the sections in man/typeprint.h2m. Without help2man the build goes on without it.
find_program(TYPEPRINT_HELP2MAN help2man)
if(TYPEPRINT_HELP2MAN)
  set(man_page ${PROJECT_BINARY_DIR}/typeprint.1)
  add_custom_command(OUTPUT ${man_page}
    COMMAND ${TYPEPRINT_HELP2MAN} --no-info --section=1 --name=${PROJECT_DESCRIPTION}
            --include=${PROJECT_SOURCE_DIR}/man/typeprint.h2m --output=${man_page} $<TARGET_FILE:typeprint_tool>
    DEPENDS typeprint_tool ${PROJECT_SOURCE_DIR}/man/typeprint.h2m
    COMMENT "Writing the typeprint(1) manual page"
    VERBATIM)
  add_custom_target(typeprint_man_page ALL DEPENDS ${man_page})
  install(FILES ${man_page} DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
else()
  message(STATUS "help2man not found: the typeprint(1) manual page is not built")
endif()
