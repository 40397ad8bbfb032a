# What `cmake --install` puts where, and the package that find_package(vemra) reads.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)
set(VEMRA_INCLUDES ${CMAKE_INSTALL_INCLUDEDIR}/vemra)
set(VEMRA_PACKAGE ${CMAKE_INSTALL_LIBDIR}/cmake/vemra)

# vemra_install(NAME ALIAS [INCLUDES DIR]): a target that hosts link to as vemra::ALIAS, with the headers below
# DIR. The same name serves within this build.
function(vemra_install name alias)
  cmake_parse_arguments(ARG "" "EXPORT" "" ${ARGN})
  if(NOT ARG_EXPORT)
    set(ARG_EXPORT vemra)
  endif()
  add_library(vemra::${alias} ALIAS ${name})
  set_target_properties(${name} PROPERTIES EXPORT_NAME ${alias} INSTALL_RPATH "$ORIGIN")
  target_include_directories(${name} INTERFACE $<INSTALL_INTERFACE:${VEMRA_INCLUDES}>)
  install(TARGETS ${name} EXPORT ${ARG_EXPORT})
endfunction()

vemra_install(behaviortree_cpp runtime)
vemra_install(vemra_tree tree)
vemra_install(vemra_leaf_contract leaf_contract)
vemra_install(vemra_leaf_host leaf_host)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/runtime/include/behaviortree_cpp DESTINATION ${VEMRA_INCLUDES})
install(FILES leaves/contract.h leaves/kinds.h DESTINATION ${VEMRA_INCLUDES}/leaves)
install(FILES leaves/host/host.h DESTINATION ${VEMRA_INCLUDES}/leaves/host)

set(VEMRA_EXPORTS vemra)
if(NOT CMAKE_CROSSCOMPILING)
  vemra_install(behaviortree_cpp_xml xml EXPORT vemra-xml)
  list(APPEND VEMRA_EXPORTS vemra-xml)

  file(RELATIVE_PATH to_libraries ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
  set_target_properties(vemra PROPERTIES INSTALL_RPATH "$ORIGIN/${to_libraries}")
  install(TARGETS vemra)

  # The pages that the command writes of itself.
  set(written ${PROJECT_BINARY_DIR}/written)
  add_custom_command(
    OUTPUT ${written}/vemra.1 ${written}/vemra ${written}/_vemra
    COMMAND ${CMAKE_COMMAND} -E make_directory ${written}
    COMMAND vemra manual > ${written}/vemra.1
    COMMAND vemra completion bash > ${written}/vemra
    COMMAND vemra completion zsh > ${written}/_vemra
    DEPENDS vemra
    COMMENT "Manual page and completion"
    VERBATIM)
  add_custom_target(vemra_written ALL DEPENDS ${written}/vemra.1)
  install(FILES ${written}/vemra.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
  install(FILES ${written}/vemra DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions)
  install(FILES ${written}/_vemra DESTINATION ${CMAKE_INSTALL_DATADIR}/zsh/site-functions)
endif()

foreach(export IN LISTS VEMRA_EXPORTS)
  install(EXPORT ${export} NAMESPACE vemra:: DESTINATION ${VEMRA_PACKAGE} FILE ${export}-targets.cmake)
endforeach()
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/vemra-config.cmake.in ${PROJECT_BINARY_DIR}/vemra-config.cmake
                              INSTALL_DESTINATION ${VEMRA_PACKAGE})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/vemra-config-version.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/vemra-config.cmake ${PROJECT_BINARY_DIR}/vemra-config-version.cmake
        DESTINATION ${VEMRA_PACKAGE})
