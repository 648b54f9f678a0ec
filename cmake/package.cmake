# What cpack makes: Debian packages, one for each component, or for Windows one archive with everything a host needs.
# script/package builds and checks both.
set(CPACK_PACKAGE_NAME lumo)
set(CPACK_PACKAGE_VENDOR "The Lumo developers")
set(CPACK_PACKAGE_CONTACT "The Lumo developers <developers@lumo.invalid>")
# Each component describes itself; a summary here would stand before all of them.
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_RESOURCE_FILE_README ${PROJECT_SOURCE_DIR}/README.md)
set(CPACK_VERBATIM_VARIABLES ON)
set(CPACK_COMPONENTS_ALL library development)
if(LUMO_BUILD_TOOLS)
  list(APPEND CPACK_COMPONENTS_ALL program)
endif()

if(WIN32)
  set(CPACK_GENERATOR ZIP)
  set(CPACK_PACKAGE_FILE_NAME lumo-${PROJECT_VERSION}-windows-${CMAKE_SYSTEM_PROCESSOR})
  install(FILES LICENSE README.md CHANGELOG.md DESTINATION . COMPONENT library)
  include(CPack)
  return()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS library)
set(CPACK_COMPONENT_PROGRAM_DEPENDS library)

set(CPACK_DEBIAN_LIBRARY_PACKAGE_NAME liblumo${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SECTION libs)
# What packages of hosts will depend on, and that the loader's cache is renewed.
file(WRITE ${PROJECT_BINARY_DIR}/shlibs
     "liblumo ${PROJECT_VERSION_MAJOR} liblumo${PROJECT_VERSION_MAJOR} (>= ${PROJECT_VERSION})\n")
file(WRITE ${PROJECT_BINARY_DIR}/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/shlibs ${PROJECT_BINARY_DIR}/triggers)
set(CPACK_COMPONENT_LIBRARY_DESCRIPTION
    "curve engine for paths of lines and cubic Beziers
Paths of straight lines and cubic Beziers can be measured, queried, edited,
offset and combined; curves stay curves.
.
This package has the shared library that programs load.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME liblumo-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
    "curve engine for paths of lines and cubic Beziers (development files)
Paths of straight lines and cubic Beziers can be measured, queried, edited,
offset and combined; curves stay curves.
.
This package has what programs are built with: headers, the CMake package
Lumo, lumo.pc, and views of paths for gdb.")
set(CPACK_DEBIAN_PROGRAM_PACKAGE_NAME lumo)
set(CPACK_DEBIAN_PROGRAM_PACKAGE_SECTION graphics)
set(CPACK_COMPONENT_PROGRAM_DESCRIPTION
    "measure and edit the curves of SVG drawings
lumo offsets, outlines, combines, mends and measures the paths of SVG
drawings, and says where they cross or what lies at a point; curves stay
curves.")

# Each package has its own copy of the licence and of the changes, as the distribution's rules want them.
find_program(GZIP gzip REQUIRED)
execute_process(COMMAND ${GZIP} -9nc ${PROJECT_SOURCE_DIR}/CHANGELOG.md OUTPUT_FILE ${PROJECT_BINARY_DIR}/changelog.gz
                COMMAND_ERROR_IS_FATAL ANY)
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  string(TOUPPER ${component} upper)
  set(documents ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${upper}_PACKAGE_NAME})
  install(FILES LICENSE DESTINATION ${documents} RENAME copyright COMPONENT ${component})
  install(FILES ${PROJECT_BINARY_DIR}/changelog.gz DESTINATION ${documents} COMPONENT ${component})
endforeach()
include(CPack)
