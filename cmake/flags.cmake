# kelmar_flags: what every target is compiled with. kelmar_product_flags: the product on top of that, which
# unwinds by jumps and so has neither exceptions nor run-time types.
add_library(kelmar_flags INTERFACE)
target_include_directories(kelmar_flags INTERFACE ${PROJECT_SOURCE_DIR})
target_compile_options(kelmar_flags INTERFACE -Wall -Wextra -Wshadow -Werror)
# A product and a sum are rounded one after the other: every processor and compiler computes the same doubles.
target_compile_options(kelmar_flags INTERFACE -ffp-contract=off)

foreach(variant KELMAR_MALLOC_RECORDS KELMAR_TINY_LIMITS KELMAR_FAIL_ALLOC KELMAR_STORM)
  if(${variant})
    target_compile_definitions(kelmar_flags INTERFACE ${variant})
  endif()
endforeach()

if(KELMAR_SANITIZE)
  set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all)
  target_compile_options(kelmar_flags INTERFACE ${sanitizers} -fno-omit-frame-pointer)
  target_link_options(kelmar_flags INTERFACE ${sanitizers})
endif()
if(KELMAR_FUZZ)
  if(NOT CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    message(FATAL_ERROR "KELMAR_FUZZ needs clang: cmake --preset fuzz")
  endif()
  target_compile_options(kelmar_flags INTERFACE -fsanitize=fuzzer-no-link)
  target_link_options(kelmar_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

add_library(kelmar_product_flags INTERFACE)
target_link_libraries(kelmar_product_flags INTERFACE kelmar_flags)
target_compile_options(kelmar_product_flags INTERFACE -fno-exceptions -fno-rtti)
if(KELMAR_COVERAGE)
  # The tests themselves are not counted. Without optimisation, so that a line is counted where it stands.
  target_compile_options(kelmar_product_flags INTERFACE --coverage -O0)
  target_link_options(kelmar_flags INTERFACE --coverage)
endif()
