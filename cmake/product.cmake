# The library of all folders, the two programs, and where they find their data.
file(GLOB core_sources CONFIGURE_DEPENDS
  ${PROJECT_SOURCE_DIR}/storage/*.cpp
  ${PROJECT_SOURCE_DIR}/numbers/*.cpp
  ${PROJECT_SOURCE_DIR}/poly/*.cpp
  ${PROJECT_SOURCE_DIR}/quoly/*.cpp
  ${PROJECT_SOURCE_DIR}/gcd/*.cpp
  ${PROJECT_SOURCE_DIR}/matrix/*.cpp
  ${PROJECT_SOURCE_DIR}/session/*.cpp)
list(FILTER core_sources EXCLUDE REGEX "/session/main(_exact)?\\.cpp$")
if(NOT core_sources)
  file(WRITE ${PROJECT_BINARY_DIR}/no_sources.cpp "")
  set(core_sources ${PROJECT_BINARY_DIR}/no_sources.cpp)
endif()

add_library(kelmar_core STATIC ${core_sources})
target_include_directories(kelmar_core PUBLIC ${PROJECT_SOURCE_DIR})
target_link_libraries(kelmar_core PRIVATE kelmar_product_flags)

# The programs differ in one definition, seen by session/main.cpp alone.
set(programs "")
if(EXISTS ${PROJECT_SOURCE_DIR}/session/main.cpp)
  foreach(program kelmar kelmar-exact)
    add_executable(${program} session/main.cpp)
    target_link_libraries(${program} PRIVATE kelmar_core kelmar_product_flags)
    set_target_properties(${program} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR})
    list(APPEND programs ${program})
  endforeach()
  target_compile_definitions(kelmar-exact PRIVATE KELMAR_EXACT)
endif()

if(KELMAR_LTO)
  set_target_properties(kelmar_core ${programs} PROPERTIES INTERPROCEDURAL_OPTIMIZATION ON)
endif()

# A program finds BACKWARD/ beside itself, after following one symbolic link.
file(CREATE_LINK ${PROJECT_SOURCE_DIR}/BACKWARD ${PROJECT_BINARY_DIR}/BACKWARD SYMBOLIC)

set(kelmar_home ${CMAKE_INSTALL_LIBDIR}/kelmar)
if(programs)
  install(TARGETS ${programs} RUNTIME DESTINATION ${kelmar_home})
endif()
install(DIRECTORY BACKWARD/ DESTINATION ${kelmar_home}/BACKWARD)
file(RELATIVE_PATH home_from_bin /${CMAKE_INSTALL_BINDIR} /${kelmar_home})
foreach(program ${programs})
  install(CODE "
    set(bin \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/${CMAKE_INSTALL_BINDIR}\")
    file(MAKE_DIRECTORY \"\${bin}\")
    file(CREATE_LINK ${home_from_bin}/${program} \"\${bin}/${program}\" SYMBOLIC)
    message(STATUS \"Installing: \${bin}/${program} -> ${home_from_bin}/${program}\")")
endforeach()

# The pages link to each other and to the examples, so they keep their places in the tree.
set(kelmar_doc ${CMAKE_INSTALL_DATAROOTDIR}/doc/kelmar)
install(DIRECTORY docs/ DESTINATION ${kelmar_doc}/docs FILES_MATCHING PATTERN *.md PATTERN development.md EXCLUDE)
install(DIRECTORY examples DESTINATION ${kelmar_doc} FILES_MATCHING PATTERN *.kel)
install(FILES LICENSE CHANGELOG.md DESTINATION ${kelmar_doc})
file(WRITE ${PROJECT_BINARY_DIR}/kelmar-exact.1 ".so man1/kelmar.1\n")
install(FILES docs/kelmar.1 ${PROJECT_BINARY_DIR}/kelmar-exact.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
