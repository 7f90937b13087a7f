# Every library typeprint links with, each declared once:
#   typeprint_dependency(MODULE pkg-config-module TARGET imported-target FIND find_package-arguments...)
#   typeprint_dependency(MODULE pkg-config-module PKGCONFIG prefix)
# With FIND, find_package() finds it and the build links TARGET; with PKGCONFIG, pkg-config finds
# the module and the build links PkgConfig::<prefix>. The same declaration writes the CMake
# package's lookup (TYPEPRINT_FIND_DEPENDENCIES) and typeprint.pc's Requires.private.
find_package(PkgConfig REQUIRED)
set(TYPEPRINT_DEPENDENCY_TARGETS)
set(TYPEPRINT_PKGCONFIG_REQUIRES)
set(TYPEPRINT_FIND_DEPENDENCIES "find_dependency(PkgConfig)\n")

macro(typeprint_dependency)
  cmake_parse_arguments(dep "" "MODULE;TARGET;PKGCONFIG" "FIND" ${ARGN})
  if(dep_FIND)
    find_package(${dep_FIND} REQUIRED)
    list(APPEND TYPEPRINT_DEPENDENCY_TARGETS ${dep_TARGET})
    list(JOIN dep_FIND " " dep_arguments)
    string(APPEND TYPEPRINT_FIND_DEPENDENCIES "find_dependency(${dep_arguments})\n")
  else()
    set(dep_prefix ${dep_PKGCONFIG})
    pkg_check_modules(${dep_prefix} REQUIRED IMPORTED_TARGET ${dep_MODULE})
    list(APPEND TYPEPRINT_DEPENDENCY_TARGETS PkgConfig::${dep_prefix})
    string(APPEND TYPEPRINT_FIND_DEPENDENCIES
      "pkg_check_modules(${dep_prefix} QUIET IMPORTED_TARGET ${dep_MODULE})\n"
      "if(NOT ${dep_prefix}_FOUND)\n"
      "  set(typeprint_FOUND FALSE)\n"
      "  set(typeprint_NOT_FOUND_MESSAGE \"typeprint needs ${dep_MODULE} (pkg-config)\")\n"
      "  return()\n"
      "endif()\n")
  endif()
  list(APPEND TYPEPRINT_PKGCONFIG_REQUIRES ${dep_MODULE})
endmacro()

typeprint_dependency(MODULE zlib TARGET ZLIB::ZLIB FIND ZLIB)
typeprint_dependency(MODULE icu-uc TARGET ICU::uc FIND ICU COMPONENTS uc)
typeprint_dependency(MODULE libplist-2.0 PKGCONFIG PLIST)
typeprint_dependency(MODULE libdeflate PKGCONFIG DEFLATE)
list(APPEND TYPEPRINT_DEPENDENCY_TARGETS ${CMAKE_DL_LIBS})
# The C++ runtime, which a program written in C must name to link the static library.
set(TYPEPRINT_RUNTIME_LIBRARIES stdc++ m ${CMAKE_DL_LIBS})
list(JOIN TYPEPRINT_PKGCONFIG_REQUIRES " " TYPEPRINT_PKGCONFIG_REQUIRES)
