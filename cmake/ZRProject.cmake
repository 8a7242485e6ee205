# zr_project_options(target): the language level, warnings and sanitizers that every target shares.
function(zr_project_options target)
  target_compile_features(${target} PUBLIC cxx_std_17)
  set_target_properties(${target} PROPERTIES
    CXX_EXTENSIONS OFF
    POSITION_INDEPENDENT_CODE ON
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON)
  if(MSVC)
    # The sources are UTF-8.
    target_compile_options(${target} PRIVATE /W4 /utf-8 /permissive- $<$<BOOL:${ZR_WERROR}>:/WX>)
  else()
    target_compile_options(${target} PRIVATE
      -Wall -Wextra -Wconversion -Wnon-virtual-dtor -Woverloaded-virtual
      $<$<BOOL:${ZR_WERROR}>:-Werror>)
  endif()
  if(WIN32)
    # Windows 7 is the oldest that Qt 5.15 runs on: what came later must be looked up at run time.
    target_compile_definitions(${target} PRIVATE NOMINMAX _WIN32_WINNT=0x0601)
  endif()
  # Log lines name their function and line in every build type.
  target_compile_definitions(${target} PRIVATE
    QT_DEPRECATED_WARNINGS QT_MESSAGELOGCONTEXT)
  if(ZR_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${ZR_SANITIZE} -fno-omit-frame-pointer
      -fno-sanitize-recover=all)
    target_link_options(${target} PUBLIC -fsanitize=${ZR_SANITIZE})
  endif()
endfunction()
