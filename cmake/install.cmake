include(CMakePackageConfigHelpers)

# Three components, as distributions divide them: library (what a host loads), development (what it is built with) and
# program (the lumo command). Below /usr files go where a distribution's own go; anywhere else the installed tree may be
# moved as a whole.
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  set(LUMO_VENDOR "vendor-")
  set(LUMO_GDB_VIEWS_DIR ${CMAKE_INSTALL_DATADIR}/gdb/auto-load/usr/${CMAKE_INSTALL_LIBDIR})
else()
  set(LUMO_VENDOR "")
  set(LUMO_GDB_VIEWS_DIR ${CMAKE_INSTALL_LIBDIR})
  file(RELATIVE_PATH to_library "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
  set(LUMO_INSTALL_RPATH "$ORIGIN/${to_library}")
endif()

install(TARGETS lumo EXPORT LumoTargets
        RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT library NAMELINK_COMPONENT development
        ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(DIRECTORY include/lumo include/tav DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
install(EXPORT LumoTargets NAMESPACE Lumo:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Lumo COMPONENT development)
if(WIN32)
  install(FILES tools/debugger/lumo.natvis DESTINATION ${CMAKE_INSTALL_DATADIR}/lumo COMPONENT development)
else()
  install(FILES ${LUMO_GDB_VIEWS} DESTINATION ${LUMO_GDB_VIEWS_DIR} COMPONENT development)
endif()

write_basic_package_version_file(${PROJECT_BINARY_DIR}/LumoConfigVersion.cmake COMPATIBILITY SameMinorVersion)
configure_file(cmake/LumoConfig.cmake.in ${PROJECT_BINARY_DIR}/LumoConfig.cmake @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/LumoConfig.cmake ${PROJECT_BINARY_DIR}/LumoConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Lumo COMPONENT development)

# lumo.pc finds its folders from where it stands, so that an installed tree may be moved. Absolute install folders, as some
# distributions set them, stay as they are.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}")
  set(LUMO_PC_PREFIX ${CMAKE_INSTALL_PREFIX})
  set(LUMO_PC_LIBDIR ${CMAKE_INSTALL_LIBDIR})
else()
  file(RELATIVE_PATH up "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
  string(REGEX REPLACE "/$" "" up "${up}")
  set(LUMO_PC_PREFIX "\${pcfiledir}/${up}")
  set(LUMO_PC_LIBDIR "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
endif()
if(IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
  set(LUMO_PC_INCLUDEDIR ${CMAKE_INSTALL_INCLUDEDIR})
else()
  set(LUMO_PC_INCLUDEDIR "\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}")
endif()
configure_file(cmake/lumo.pc.in ${PROJECT_BINARY_DIR}/lumo.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/lumo.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
