# Warnings and optional sanitizers, applied to every target of the project.

if(LM_SANITIZE)
  string(REPLACE "," ";" _lm_sanitizers "${LM_SANITIZE}")
  foreach(_lm_sanitizer IN LISTS _lm_sanitizers)
    add_compile_options(-fsanitize=${_lm_sanitizer})
    add_link_options(-fsanitize=${_lm_sanitizer})
  endforeach()
  add_compile_options(-fno-omit-frame-pointer -fno-sanitize-recover=all)
endif()

function(lm_apply_compiler_options target)
  target_compile_options(${target} PRIVATE -Wall -Wextra)
  set_target_properties(${target} PROPERTIES
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON)
endfunction()
