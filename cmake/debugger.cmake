# What debuggers need: the description of the path classes in the library itself (src/polycurve/debug_types.cpp says why),
# and gdb's views beside it, where gdb looks for them by this name.
set(described ${PROJECT_SOURCE_DIR}/src/polycurve/debug_types.cpp)
# What is shipped does not name the folder that it was built in.
set(anonymous "-ffile-prefix-map=${PROJECT_BINARY_DIR}=lumo;-ffile-prefix-map=${PROJECT_SOURCE_DIR}=lumo")
if(CMAKE_CXX_COMPILER_ID STREQUAL GNU)
  set_source_files_properties(${described} PROPERTIES COMPILE_OPTIONS "-g;-gz;-femit-class-debug-always;${anonymous}")
elseif(CMAKE_CXX_COMPILER_ID MATCHES Clang)
  set_source_files_properties(${described} PROPERTIES COMPILE_OPTIONS "-g;-gz;-fstandalone-debug;${anonymous}")
endif()

if(UNIX)
  set(LUMO_GDB_VIEWS ${PROJECT_BINARY_DIR}/liblumo.so.${PROJECT_VERSION}-gdb.py)
  configure_file(tools/debugger/lumo-gdb.py ${LUMO_GDB_VIEWS} COPYONLY)
endif()
