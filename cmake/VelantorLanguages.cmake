# A desktop program speaks Spanish where the catalogues lie beside it, otherwise English.

# Without line numbers, which would change the table of translations with every edit of a source.
set(velantor_lupdate_options -source-language en -target-language es -locations none -no-obsolete)

# Where translations/ puts the catalogues.
set(velantor_language_folder "${CMAKE_BINARY_DIR}/bin")

# velantor_desktop_languages(TARGET): builds the executable into bin/, where the Spanish texts lie beside it, and links
# it once more into bin/english/, where none lie and it speaks English: for developers, tests and pictures.
function(velantor_desktop_languages target)
  set_target_properties(${target} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${velantor_language_folder}")
  add_dependencies(${target} translations)
  set(english "${velantor_language_folder}/english")
  add_custom_command(TARGET ${target} POST_BUILD
    COMMAND ${CMAKE_COMMAND} -E make_directory "${english}"
    COMMAND ${CMAKE_COMMAND} -E rm -f "${english}/$<TARGET_FILE_NAME:${target}>"
    COMMAND ${CMAKE_COMMAND} -E create_hardlink "$<TARGET_FILE:${target}>"
            "${english}/$<TARGET_FILE_NAME:${target}>"
    VERBATIM)
endfunction()
