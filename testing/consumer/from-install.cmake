# The tree as `cmake --install` makes it, and moved.
function(place_tree)
  run("${CMAKE_COMMAND}" --install "${build}" --config "${configuration}" --strip --prefix "${work}/installed")
  file(MAKE_DIRECTORY "${root}")
  file(RENAME "${work}/installed" "${tree}")
endfunction()

function(remove_tree)
endfunction()
