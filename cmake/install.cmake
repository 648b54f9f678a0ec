include(CMakePackageConfigHelpers)

install(TARGETS lumo EXPORT LumoTargets RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR}
        LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(DIRECTORY include/lumo include/tav DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(EXPORT LumoTargets NAMESPACE Lumo:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Lumo)

write_basic_package_version_file(${PROJECT_BINARY_DIR}/LumoConfigVersion.cmake COMPATIBILITY SameMinorVersion)
configure_file(cmake/LumoConfig.cmake.in ${PROJECT_BINARY_DIR}/LumoConfig.cmake @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/LumoConfig.cmake ${PROJECT_BINARY_DIR}/LumoConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/Lumo)

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
install(FILES ${PROJECT_BINARY_DIR}/lumo.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
