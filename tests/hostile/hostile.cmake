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
  # Levels at such requests: with sanitizers, whose builds ask for every record, they are a hundred times as many.
  kelmar_test_program(${CMAKE_CURRENT_SOURCE_DIR}/hostile/starved_test.cpp ${CMAKE_CURRENT_SOURCE_DIR})
  set_tests_properties(hostile_starved_test PROPERTIES LABELS hostile TIMEOUT 900
    ENVIRONMENT "${test_environment};KELMAR_LEVELS=2")
endif()

# A panic stop at every poll; hostile levels at two polls of each statement (KELMAR_LEVELS=8 is the whole test).
if(KELMAR_STORM)
  foreach(name stops levels)
    kelmar_test_program(${CMAKE_CURRENT_SOURCE_DIR}/hostile/${name}_test.cpp ${CMAKE_CURRENT_SOURCE_DIR})
    set_tests_properties(hostile_${name}_test PROPERTIES LABELS hostile TIMEOUT 900)
  endforeach()
  set_tests_properties(hostile_levels_test PROPERTIES ENVIRONMENT "${test_environment};KELMAR_LEVELS=2")
endif()

# Levels that functions push, in every build: a quarter of the answers.
kelmar_test_program(${CMAKE_CURRENT_SOURCE_DIR}/hostile/calls_test.cpp ${CMAKE_CURRENT_SOURCE_DIR})
set_tests_properties(hostile_calls_test PROPERTIES LABELS hostile TIMEOUT 900
  ENVIRONMENT "${test_environment};KELMAR_LEVELS=2")

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

# Saved sessions: random ones come back, damaged ones end in order, and a full disk harms no file.
add_test(NAME hostile/saves COMMAND ${python_program} -I -S
  ${CMAKE_CURRENT_SOURCE_DIR}/hostile/saves $<TARGET_FILE:kelmar> 25)
add_test(NAME hostile/saves.exact COMMAND ${python_program} -I -S
  ${CMAKE_CURRENT_SOURCE_DIR}/hostile/saves $<TARGET_FILE:kelmar-exact> 25)

# Programs that are long or deep without measure.
add_test(NAME hostile/nesting COMMAND ${python_program} -I -S
  ${CMAKE_CURRENT_SOURCE_DIR}/hostile/nesting $<TARGET_FILE:kelmar>)
add_test(NAME hostile/nesting.exact COMMAND ${python_program} -I -S
  ${CMAKE_CURRENT_SOURCE_DIR}/hostile/nesting $<TARGET_FILE:kelmar-exact>)

# Damaged data files.
add_test(NAME hostile/data_files COMMAND ${python_program} -I -S
  ${CMAKE_CURRENT_SOURCE_DIR}/hostile/data_files $<TARGET_FILE:kelmar-exact> ${PROJECT_SOURCE_DIR}/BACKWARD 40)
set_tests_properties(hostile/interrupts hostile/interrupts.exact hostile/saves hostile/saves.exact
  hostile/nesting hostile/nesting.exact hostile/data_files ${memory_tests}
  PROPERTIES LABELS hostile ENVIRONMENT "${test_environment}" TIMEOUT 300)
