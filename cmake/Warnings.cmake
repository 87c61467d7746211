# One place for the flags every target of the project is built with.
function(pindle_target target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                                           -Wsign-conversion -Wnon-virtual-dtor -Woverloaded-virtual)
  if(PINDLE_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
                                               QT_NO_FOREACH QT_NO_KEYWORDS)
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
endfunction()
