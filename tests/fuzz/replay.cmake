# fuzz/corpus/statements/<name>: each file is standard input of a session, which must end in order. One ctest
# entry each; under the preset asan no sanitizer may report either.
file(GLOB inputs CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/fuzz/corpus/statements/*)
foreach(input ${inputs})
  cmake_path(GET input FILENAME name)
  add_test(NAME fuzz/statements/${name} COMMAND ${python_program} -I -S
    ${CMAKE_CURRENT_SOURCE_DIR}/fuzz/replay $<TARGET_FILE:kelmar> ${input})
  set_tests_properties(fuzz/statements/${name} PROPERTIES
    LABELS fuzz ENVIRONMENT "${test_environment}" TIMEOUT 120)
endforeach()
