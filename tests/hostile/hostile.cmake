# Builds that are hostile on purpose. In the presets tiny and storm the transcripts of session/ are the tests:
# they must come out the same. In the preset fail-alloc, hostile/<case>.in is run again and again, the k-th
# allocation failing in the k-th run, until a run needs fewer than k; each run must end in order.
if(KELMAR_FAIL_ALLOC)
  file(GLOB inputs CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/hostile/*.in)
  foreach(input ${inputs})
    cmake_path(GET input STEM name)
    add_test(NAME hostile/fail_alloc/${name} COMMAND ${python_program} -I -S
      ${CMAKE_CURRENT_SOURCE_DIR}/hostile/fail_alloc $<TARGET_FILE:kelmar> ${input})
    set_tests_properties(hostile/fail_alloc/${name} PROPERTIES
      LABELS hostile ENVIRONMENT "${test_environment}" TIMEOUT 600)
  endforeach()
endif()
