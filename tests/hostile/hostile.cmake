# Builds that are hostile on purpose. In the presets tiny and storm the transcripts of session/ are the tests:
# they must come out the same. In the preset fail-alloc, hostile/<case>.in is run again and again, the k-th heap
# request failing in the k-th run, until a run makes fewer than k.
if(KELMAR_FAIL_ALLOC)
  add_executable(fail_alloc hostile/fail_alloc.cpp)
  target_link_libraries(fail_alloc PRIVATE kelmar_core kelmar_flags)
  target_compile_definitions(fail_alloc PRIVATE KELMAR_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  set_target_properties(fail_alloc PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR})
  file(GLOB inputs CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/hostile/*.in)
  foreach(input ${inputs})
    cmake_path(GET input STEM LAST_ONLY name)
    add_test(NAME hostile/fail_alloc/${name} COMMAND ${python_program} -I -S
      ${CMAKE_CURRENT_SOURCE_DIR}/hostile/fail_alloc $<TARGET_FILE:fail_alloc> ${input})
    set_tests_properties(hostile/fail_alloc/${name} PROPERTIES
      LABELS hostile ENVIRONMENT "${test_environment}" TIMEOUT 600)
  endforeach()
endif()

# A panic stop at every poll.
if(KELMAR_STORM)
  kelmar_test_program(${CMAKE_CURRENT_SOURCE_DIR}/hostile/stops_test.cpp ${CMAKE_CURRENT_SOURCE_DIR})
  set_tests_properties(hostile_stops_test PROPERTIES LABELS hostile TIMEOUT 600)
endif()

# Interrupts at random times, in every build.
add_test(NAME hostile/interrupts COMMAND ${python_program} -I -S
  ${CMAKE_CURRENT_SOURCE_DIR}/hostile/interrupts $<TARGET_FILE:kelmar> 2000)
add_test(NAME hostile/interrupts.exact COMMAND ${python_program} -I -S
  ${CMAKE_CURRENT_SOURCE_DIR}/hostile/interrupts $<TARGET_FILE:kelmar-exact> 2000)

# Tens of thousands of errors in one session, whose memory is watched: that of a sanitizer grows with what it holds
# back.
set(memory_tests "")
if(NOT KELMAR_SANITIZE)
  add_test(NAME hostile/errors COMMAND ${python_program} -I -S
    ${CMAKE_CURRENT_SOURCE_DIR}/hostile/errors $<TARGET_FILE:kelmar> 30000)
  add_test(NAME hostile/errors.exact COMMAND ${python_program} -I -S
    ${CMAKE_CURRENT_SOURCE_DIR}/hostile/errors $<TARGET_FILE:kelmar-exact> 30000)
  set(memory_tests hostile/errors hostile/errors.exact)
endif()

# Damaged data files.
add_test(NAME hostile/data_files COMMAND ${python_program} -I -S
  ${CMAKE_CURRENT_SOURCE_DIR}/hostile/data_files $<TARGET_FILE:kelmar-exact> ${PROJECT_SOURCE_DIR}/BACKWARD 40)
set_tests_properties(hostile/interrupts hostile/interrupts.exact hostile/data_files ${memory_tests}
  PROPERTIES LABELS hostile ENVIRONMENT "${test_environment}" TIMEOUT 300)
