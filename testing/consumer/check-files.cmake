# What holds for the files of a tree wherever it comes from.

# They were made in a folder that others do not have.
get_filename_component(source "${CMAKE_CURRENT_LIST_DIR}/../.." ABSOLUTE)
string(REGEX REPLACE "([][+.*()^$?|\\\\])" "\\\\\\1" places "${source}/|${build}/")
file(GLOB_RECURSE files "${tree}/*")
foreach(file IN LISTS files)
  file(STRINGS "${file}" found REGEX "${places}" LIMIT_COUNT 1)
  if(found)
    message(SEND_ERROR "${file} names the folder it was made in: ${found}")
  endif()
endforeach()

# Links of pages lead to pages and sources.
file(GLOB_RECURSE pages "${tree}/${pageFolder}/*.md")
foreach(page IN LISTS pages)
  get_filename_component(folder "${page}" DIRECTORY)
  file(READ "${page}" text)
  string(REPLACE "](" "<link:" text "${text}") # an open bracket would keep a list together
  string(REGEX MATCHALL "<link:[^][):#]+" links "${text}")
  foreach(link IN LISTS links)
    string(SUBSTRING "${link}" 6 -1 link)
    if(NOT EXISTS "${folder}/${link}")
      message(SEND_ERROR "${page} leads to what is not installed: ${link}")
    endif()
  endforeach()
endforeach()

# Programs find their libraries.
file(GLOB programs "${tree}/${programFolder}/*${suffix}")
foreach(program IN LISTS programs)
  if(NOT IS_DIRECTORY "${program}")
    run(${emulator} "${program}" --help)
  endif()
endforeach()
