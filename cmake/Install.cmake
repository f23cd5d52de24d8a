# What `cmake --install` puts where. Libraries go out as the CMake package
# QuillanWidgets (QuillanWidgets::<name>) and a pkg-config file; their headers
# keep the include form used inside the tree ("platform/Date.hpp"), under
# include/quillan-widgets so that the folder names stay out of /usr/include.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(QUILLAN_INCLUDE_SUBDIR quillan-widgets)
set(QUILLAN_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/QuillanWidgets)
set(QUILLAN_HEADERS_DIR ${CMAKE_INSTALL_INCLUDEDIR}/${QUILLAN_INCLUDE_SUBDIR})

# Headers that speak a third-party library's types (ICU, SQLite, Cairo, Pango,
# JSON values) serve the library's own sources and stay in the tree, so that a
# consumer compiles against us with nothing but our headers.
function(quillan_internal_headers folder)
  set_property(GLOBAL APPEND PROPERTY QUILLAN_INTERNAL_HEADERS_${folder} ${ARGN})
endfunction()

function(quillan_install_headers folder)
  file(GLOB headers RELATIVE ${PROJECT_SOURCE_DIR}/src/${folder} CONFIGURE_DEPENDS
       ${PROJECT_SOURCE_DIR}/src/${folder}/*.hpp)
  get_property(internal GLOBAL PROPERTY QUILLAN_INTERNAL_HEADERS_${folder})
  if(internal)
    list(REMOVE_ITEM headers ${internal})
  endif()
  list(TRANSFORM headers PREPEND ${PROJECT_SOURCE_DIR}/src/${folder}/)
  install(FILES ${headers} COMPONENT development
          DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${QUILLAN_INCLUDE_SUBDIR}/${folder})
endfunction()

# Installs library `target` as QuillanWidgets::<export_name>, with the public
# headers of its source folders. A library added later needs this one line.
function(quillan_install_library target export_name)
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${export_name})
  add_library(QuillanWidgets::${export_name} ALIAS ${target})
  target_include_directories(${target} INTERFACE
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/${QUILLAN_INCLUDE_SUBDIR}>)
  install(TARGETS ${target} EXPORT QuillanWidgetsTargets COMPONENT development
          ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
  get_target_property(folders ${target} QUILLAN_FOLDERS)
  if(folders)
    foreach(folder ${folders})
      quillan_install_headers(${folder})
    endforeach()
  endif()
endfunction()

# Installs command `target` (the Debian package carries this component).
function(quillan_install_command target)
  install(TARGETS ${target} COMPONENT command RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
endfunction()

# The package files: targets, the config that finds our dependencies again,
# the version (same major is compatible), and pkg-config (static libraries:
# their dependencies are listed as required, not private).
function(quillan_install_package)
  install(EXPORT QuillanWidgetsTargets NAMESPACE QuillanWidgets:: COMPONENT development
          DESTINATION ${QUILLAN_CMAKE_DIR})
  configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/QuillanWidgetsConfig.cmake.in
    ${PROJECT_BINARY_DIR}/QuillanWidgetsConfig.cmake INSTALL_DESTINATION ${QUILLAN_CMAKE_DIR}
    PATH_VARS QUILLAN_HEADERS_DIR)
  write_basic_package_version_file(${PROJECT_BINARY_DIR}/QuillanWidgetsConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
  install(FILES ${PROJECT_BINARY_DIR}/QuillanWidgetsConfig.cmake
                ${PROJECT_BINARY_DIR}/QuillanWidgetsConfigVersion.cmake
          COMPONENT development DESTINATION ${QUILLAN_CMAKE_DIR})
  # The prefix relative to the .pc file, so that a staged install works too.
  file(RELATIVE_PATH QUILLAN_PC_TO_PREFIX /prefix/${CMAKE_INSTALL_LIBDIR}/pkgconfig /prefix)
  configure_file(${PROJECT_SOURCE_DIR}/cmake/quillan-widgets.pc.in
                 ${PROJECT_BINARY_DIR}/quillan-widgets.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/quillan-widgets.pc COMPONENT development
          DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()

# The command's man page and bash completion, both written at build time from
# what the command itself declares: the page from its help by help2man, the
# completion from its table of subcommands and options. Both go with the
# command. help2man is only looked for here, so that a build of the command
# alone does without it.
function(quillan_install_command_docs target)
  find_program(HELP2MAN help2man)
  set(page ${CMAKE_CURRENT_BINARY_DIR}/${target}.1)
  add_custom_command(OUTPUT ${page}
    COMMAND ${CMAKE_COMMAND} -DCOMMAND=$<TARGET_FILE:${target}> -DVERSION=${PROJECT_VERSION}
            -DOUTPUT=${page} -DWORK=${CMAKE_CURRENT_BINARY_DIR} -DHELP2MAN=${HELP2MAN}
            -P ${PROJECT_SOURCE_DIR}/cmake/ManPage.cmake
    DEPENDS ${target} ${PROJECT_SOURCE_DIR}/cmake/ManPage.cmake
    COMMENT "Writing the man page of ${target}" VERBATIM)
  add_custom_target(${target}-man ALL DEPENDS ${page})
  install(FILES ${page} COMPONENT command DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

  set(template ${PROJECT_SOURCE_DIR}/dist/${target}.bash-completion.in)
  set(completion ${CMAKE_CURRENT_BINARY_DIR}/${target}.bash-completion)
  add_custom_command(OUTPUT ${completion}
    COMMAND ${CMAKE_COMMAND} -DCOMMAND=$<TARGET_FILE:${target}> -DTEMPLATE=${template} -DOUTPUT=${completion}
            -P ${PROJECT_SOURCE_DIR}/cmake/BashCompletion.cmake
    DEPENDS ${target} ${template} ${PROJECT_SOURCE_DIR}/cmake/BashCompletion.cmake
    COMMENT "Writing the bash completion of ${target}" VERBATIM)
  add_custom_target(${target}-completion ALL DEPENDS ${completion})
  install(FILES ${completion} COMPONENT command
          DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME ${target})
endfunction()
