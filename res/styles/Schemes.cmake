# Makes the style sheets: one template, filled in with the colours of each scheme, and its small pictures likewise.

set(style_schemes dark dark-vet light)

# Role of a colour, then its value in each scheme. Red (alarm) is for what endangers the patient or the recording.
set(style_colours
  "window           #14181d #14181d #e9edf1"
  "panel            #1b2127 #1b2127 #f6f8fa"
  "raised           #262e37 #262e37 #dce2e8"
  "hover            #303a45 #303a45 #cfd7df"
  "pressed          #1f262e #1f262e #c0cad4"
  "field            #0f1317 #0f1317 #ffffff"
  "stripe           #151a1f #151a1f #f3f6f8"
  "border           #38434f #38434f #b3bec9"
  "handle           #4a5765 #4a5765 #9aa7b4"
  "text             #dfe5ec #dfe5ec #1b2127"
  "bright           #ffffff #ffffff #000000"
  "secondary        #93a1b0 #93a1b0 #52606e"
  "disabled         #66727f #66727f #8a96a3"
  "accent           #1f6f8b #35704a #1f6f8b"
  "accent_hover     #257f9f #3d8055 #257f9f"
  "accent_pressed   #195a71 #2b5b3c #195a71"
  "accent_text      #ffffff #ffffff #ffffff"
  "checked          #1d4556 #234733 #bcdde9"
  "focus            #58b7d4 #72c390 #1a6580"
  "alarm            #ff5a5f #ff5a5f #c62828"
  "caution          #e0b04a #e0b04a #9a6b00"
  "light_panel      #f4f6f8 #f4f6f8 #f4f6f8"
  "light_panel_text #1a1a1a #1a1a1a #1a1a1a")

# Three texts have their own by agreement: the title of the launcher, the blood pressure as it is typed, and the heart
# rate, which is read from across the room.
set(style_sizes body 14px medium 18px large 32px title 24pt entry 16pt reading 48px)

# Picture of the sheet, the drawing it is made of, the role of its colour.
set(style_images
  "arrow-down chevron-down text"
  "arrow-down-disabled chevron-down disabled"
  "arrow-down-dark chevron-down light_panel_text"
  "arrow-up chevron-up text"
  "arrow-up-disabled chevron-up disabled"
  "arrow-left chevron-left text"
  "arrow-right chevron-right text"
  "arrow-right-disabled chevron-right disabled"
  "check check accent_text"
  "check-menu check text"
  "check-disabled check disabled"
  "partly minus accent_text"
  "dot dot accent_text"
  "dot-menu dot text"
  "dot-disabled dot disabled"
  "information info-circle focus"
  "question help-circle focus"
  "warning alert-triangle caution"
  "critical alert-octagon alarm")

# Sets the variables of one scheme in the caller's scope, the colours by their roles.
macro(velantor_set_scheme scheme)
  list(FIND style_schemes ${scheme} column)
  math(EXPR column "${column} + 1")
  foreach(line IN LISTS style_colours)
    separate_arguments(fields UNIX_COMMAND "${line}")
    list(GET fields 0 role)
    list(GET fields ${column} ${role})
  endforeach()
  set(sizes ${style_sizes})
  while(sizes)
    list(POP_FRONT sizes size value)
    set(size_${size} ${value})
  endwhile()
endmacro()

# velantor_style_sheets(OUT): writes the sheets and the list of what is compiled in, whose path is put into OUT.
function(velantor_style_sheets out)
  set(source ${CMAKE_CURRENT_SOURCE_DIR}/styles)
  set(target ${CMAKE_CURRENT_BINARY_DIR}/styles)
  set(style_files "")
  foreach(scheme IN LISTS style_schemes)
    velantor_set_scheme(${scheme})
    configure_file(${source}/style.css.in ${target}/${scheme}.css @ONLY)
    string(APPEND style_files "    <file>${scheme}.css</file>\n")
    foreach(image IN LISTS style_images)
      separate_arguments(fields UNIX_COMMAND "${image}")
      list(POP_FRONT fields name drawing role)
      set(colour ${${role}})
      configure_file(${source}/images/${drawing}.svg.in ${target}/${scheme}/${name}.svg @ONLY)
      string(APPEND style_files "    <file>${scheme}/${name}.svg</file>\n")
    endforeach()
  endforeach()
  configure_file(${source}/styles.qrc.in ${target}/styles.qrc @ONLY)
  set(${out} ${target}/styles.qrc PARENT_SCOPE)
endfunction()

# velantor_dark_colours(HEADER): writes definitions DARK_<ROLE> "#rrggbb" for C++.
function(velantor_dark_colours header)
  set(definitions "#pragma once\n")
  velantor_set_scheme(dark)
  foreach(line IN LISTS style_colours)
    separate_arguments(fields UNIX_COMMAND "${line}")
    list(GET fields 0 role)
    string(TOUPPER ${role} upper)
    string(APPEND definitions "#define DARK_${upper} \"${${role}}\"\n")
  endforeach()
  file(CONFIGURE OUTPUT ${header} CONTENT "${definitions}" @ONLY)
endfunction()
