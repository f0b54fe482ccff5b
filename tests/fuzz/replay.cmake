# fuzz/corpus/statements/<name>: each file is standard input of a session, which must end in order;
# fuzz/corpus/saved_files/<name>: each is a file that a session of either program reads. One ctest entry each; under the
# preset asan no sanitizer may report either.
function(kelmar_replay kind name program input)
  add_test(NAME fuzz/${kind}/${name} COMMAND ${python_program} -I -S
    ${CMAKE_CURRENT_SOURCE_DIR}/fuzz/replay ${ARGN} $<TARGET_FILE:${program}> ${input})
  set_tests_properties(fuzz/${kind}/${name} PROPERTIES LABELS fuzz ENVIRONMENT "${test_environment}" TIMEOUT 120)
endfunction()

file(GLOB inputs CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/fuzz/corpus/statements/*)
foreach(input ${inputs})
  cmake_path(GET input FILENAME name)
  kelmar_replay(statements ${name} kelmar ${input})
endforeach()
file(GLOB inputs CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/fuzz/corpus/saved_files/*)
foreach(input ${inputs})
  cmake_path(GET input FILENAME name)
  kelmar_replay(saved_files ${name} kelmar ${input} --saved)
  kelmar_replay(saved_files ${name}.exact kelmar-exact ${input} --saved)
endforeach()
