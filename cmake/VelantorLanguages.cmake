# Without line numbers, which would change the table of translations with every edit of a source.
set(velantor_lupdate_options -source-language en -target-language es -locations none -no-obsolete)

# velantor_desktop_languages(TARGET): builds the executable into bin/, where the Spanish texts lie beside it, and links
# it once more into bin/english/, where none lie and it speaks English: for developers, tests and pictures.
function(velantor_desktop_languages target)
  set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
  add_dependencies(${target} translations)
  set(english "${CMAKE_BINARY_DIR}/bin/english")
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E make_directory "${english}"
    COMMAND ${CMAKE_COMMAND} -E rm -f "${english}/$<TARGET_FILE_NAME:${target}>"
    COMMAND ${CMAKE_COMMAND} -E create_hardlink "$<TARGET_FILE:${target}>"
            "${english}/$<TARGET_FILE_NAME:${target}>"
    VERBATIM)
endfunction()
