# The pictures of assets/, rendered by the machine that builds, whichever system is
# built for.
find_program(RSVG_CONVERT rsvg-convert REQUIRED)

# The icon is in other pictures too.
set(tarnvale_assets ${PROJECT_SOURCE_DIR}/assets)
set(tarnvale_icon ${tarnvale_assets}/tarnvale.svg)

# tarnvale_pictures(VARIABLE FOLDER): each picture but the icon at 1x, 2x and 3x, as
# FOLDER/NAME/1.png and so on. The variable holds the files.
function(tarnvale_pictures variable folder)
  file(GLOB drawings CONFIGURE_DEPENDS ${tarnvale_assets}/*.svg)
  list(REMOVE_ITEM drawings ${tarnvale_icon})
  set(files)
  foreach(drawing ${drawings})
    get_filename_component(name ${drawing} NAME_WE)
    foreach(scale 1 2 3)
      set(file ${folder}/${name}/${scale}.png)
      add_custom_command(OUTPUT ${file} DEPENDS ${drawing} ${tarnvale_icon}
                         COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}/${name}
                         COMMAND ${RSVG_CONVERT} -z ${scale} -o ${file} ${drawing})
      list(APPEND files ${file})
    endforeach()
  endforeach()
  set(${variable} ${files} PARENT_SCOPE)
endfunction()

# tarnvale_icons(VARIABLE PATTERN SIZE...): the program's icon in sizes of so many
# pixels; @ in the pattern stands for the size.
function(tarnvale_icons variable pattern)
  set(files)
  foreach(size ${ARGN})
    string(REPLACE @ ${size} file ${pattern})
    get_filename_component(folder ${file} DIRECTORY)
    add_custom_command(OUTPUT ${file} DEPENDS ${tarnvale_icon}
                       COMMAND ${CMAKE_COMMAND} -E make_directory ${folder}
                       COMMAND ${RSVG_CONVERT} -w ${size} -o ${file} ${tarnvale_icon})
    list(APPEND files ${file})
  endforeach()
  set(${variable} ${files} PARENT_SCOPE)
endfunction()

# tarnvale_ico(FILE): the program's icon as a resource of a Windows program.
function(tarnvale_ico file)
  find_program(ICOTOOL icotool REQUIRED)
  tarnvale_icons(small ${file}.@.png 16 24 32 48)
  tarnvale_icons(large ${file}.@.png 256)
  # Older systems know a compressed picture in the largest size only.
  add_custom_command(OUTPUT ${file} DEPENDS ${small} ${large}
                     COMMAND ${ICOTOOL} -c -o ${file} ${small} --raw=${large})
endfunction()
