# The manual and what is installed: docs/manual/<page> runs the examples of a page, install/tree installs into a
# temporary place and runs sessions there. Every file in examples/ has its transcript in session/examples/.
file(GLOB examples CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/examples/*.kel)
foreach(example ${examples})
  cmake_path(GET example STEM name)
  file(GLOB runs ${CMAKE_CURRENT_SOURCE_DIR}/session/examples/${name}.in
    ${CMAKE_CURRENT_SOURCE_DIR}/session/examples/${name}.exact.in)
  if(NOT runs)
    message(SEND_ERROR "examples/${name}.kel has no link tests/session/examples/${name}.in or ${name}.exact.in")
  endif()
endforeach()

if(NOT (KELMAR_TINY_LIMITS OR KELMAR_STORM OR KELMAR_FAIL_ALLOC))
  file(GLOB pages CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/docs/manual/*.md)
  foreach(page ${pages})
    cmake_path(GET page STEM name)
    add_test(NAME docs/manual/${name} COMMAND ${python_program} -I -S ${PROJECT_SOURCE_DIR}/tools/check_manual
      --programs $<TARGET_FILE_DIR:kelmar> ${page})
    set_tests_properties(docs/manual/${name} PROPERTIES
      LABELS docs ENVIRONMENT "${test_environment}" TIMEOUT 120)
  endforeach()

  add_test(NAME docs/manual_checker COMMAND ${python_program} -I -S
    ${CMAKE_CURRENT_SOURCE_DIR}/manual/checker_finds_faults $<TARGET_FILE_DIR:kelmar>)
  add_test(NAME install/tree COMMAND ${python_program} -I -S ${CMAKE_CURRENT_SOURCE_DIR}/install/installed_tree
    ${CMAKE_COMMAND} ${PROJECT_BINARY_DIR})
  set_tests_properties(docs/manual_checker install/tree PROPERTIES LABELS docs ENVIRONMENT "${test_environment}" TIMEOUT 120)
endif()
