# Warnings are errors on our own code, with g++ and clang alike. Third-party headers come in
# as system includes, so their warnings do not count.
function(bql_project_options target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Werror -Wshadow -Wcast-align -Wunused -Wnull-dereference -Wformat=2
    $<$<COMPILE_LANGUAGE:CXX>:-Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual>)
  if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
    target_compile_options(${target} PRIVATE -Wthread-safety)
  endif()
  # Shared libraries must resolve every symbol at link time; sanitized builds are exempt, since
  # clang links the sanitizer runtimes into executables only.
  get_target_property(kind ${target} TYPE)
  if((kind STREQUAL "SHARED_LIBRARY" OR kind STREQUAL "MODULE_LIBRARY")
     AND NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize=")
    if(APPLE)
      target_link_options(${target} PRIVATE LINKER:-undefined,error)
    else()
      target_link_options(${target} PRIVATE LINKER:--no-undefined)
    endif()
  endif()
endfunction()

# C sources get the same strictness minus the C++-only warnings.
function(bql_project_c_options target)
  target_compile_options(${target} PRIVATE
    $<$<COMPILE_LANGUAGE:C>:-Wall -Wextra -Werror -Wshadow -Wcast-align -Wformat=2>)
endfunction()
