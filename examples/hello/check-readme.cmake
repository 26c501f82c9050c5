# Fails unless the file README shows PROGRAM, to the letter, in a block of C++ code.
file(READ "${README}" readme)
file(READ "${PROGRAM}" program)
string(FIND "${readme}" "```cpp\n${program}```\n" place)
if(place EQUAL -1)
  message(FATAL_ERROR "the program in ${README} is not ${PROGRAM}")
endif()
