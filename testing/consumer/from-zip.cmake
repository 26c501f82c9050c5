# The tree as it is unpacked.
function(place_tree)
  file(GLOB package "${build}/packages/*-${version}-*.zip")
  get_filename_component(folder "${package}" NAME_WLE)
  file(ARCHIVE_EXTRACT INPUT "${package}" DESTINATION "${root}")
  file(RENAME "${root}/${folder}" "${tree}")
endfunction()

function(remove_tree)
endfunction()
